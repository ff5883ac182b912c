#pragma once

#include <qsf2sql/storage.h>

#include <string>

namespace kvan::io::c {

/// What a handle stands for: an open analysis, with lines in the trace where it begins and ends.
class StorageHandle {
public:
    StorageHandle(const std::string& utf8Path, bool rawCalibration);
    StorageHandle(const StorageHandle&) = delete;
    StorageHandle& operator=(const StorageHandle&) = delete;
    ~StorageHandle();

    Qsf2Sql& storage() { return m_storage; }

private:
    logging::Logger m_logger;
    Qsf2Sql m_storage;
};

}  // namespace kvan::io::c
