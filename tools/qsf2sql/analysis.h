#pragma once

#include "row.h"

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qsf2sql_tool {

/// The metadata of an analysis: its cache, opened for reading. A cache that had to be made in the temporary directory
/// is removed with the object.
class Analysis {
public:
    /// Which variables the cache must hold at least.
    enum Variables { MinimalSet, AllVariables };

    /// `path` is the directory of the analysis or its main file, in UTF-8. Throws `std::runtime_error` with the
    /// library's words.
    explicit Analysis(const std::string& path, Variables variables = MinimalSet);
    Analysis(const Analysis&) = delete;
    Analysis& operator=(const Analysis&) = delete;
    ~Analysis();

    const std::string& mainFile() const { return m_mainFile; }
    const std::string& cacheFile() const { return m_cacheFile; }
    bool isCacheTemporary() const { return m_isCacheTemporary; }

    Database& database() { return *m_database; }

private:
    std::string m_mainFile;
    std::string m_cacheFile;
    bool m_isCacheTemporary;
    std::unique_ptr<Database> m_database;
};

/// The arrays of an analysis.
class ArrayStorage {
public:
    ArrayStorage(const Analysis& analysis, bool rawCalibration);
    ArrayStorage(const ArrayStorage&) = delete;
    ArrayStorage& operator=(const ArrayStorage&) = delete;
    ~ArrayStorage();

    /// The array with that Id; empty if its block does not have this component. Throws `std::runtime_error` with the
    /// library's words.
    std::vector<double> read(std::uint64_t id);

private:
    std::uint64_t m_handle;
    std::uint64_t m_mainFileSize;
};

}  // namespace qsf2sql_tool
