#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <boost/filesystem/path.hpp>
#include <memory>

namespace kvan::io::qsf2sql::cache {

/// Deleter of the connection to a cache that stays on disk.
struct CacheCloser {
    void operator()(cppsqlite::CppSQLite3DB* database) const noexcept;
};

/// Deleter of the connection to a temporary cache: closes it and removes the file. Never throws.
class CacheDeleter {
public:
    explicit CacheDeleter(const boost::filesystem::path& cacheFile);

    void operator()(cppsqlite::CppSQLite3DB* database) const noexcept;

private:
    std::shared_ptr<const boost::filesystem::path> m_cacheFile;
};

}  // namespace kvan::io::qsf2sql::cache
