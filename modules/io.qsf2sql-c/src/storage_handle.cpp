#include "storage_handle.h"

#include <sysutils/platform.h>

// The first line of the trace follows the open, so that an analysis that could not be opened leaves neither line.
namespace kvan::io::c {

StorageHandle::StorageHandle(const std::string& utf8Path, bool rawCalibration)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.c_dll")),
      m_storage(sys::pathFromUtf8(utf8Path), CalibrationPrefs::fromRawFlag(rawCalibration), VariablesPrefs{}) {
    KVAN_LOG(m_logger, TRACE) << "Instance created.";
}

StorageHandle::~StorageHandle() {
    KVAN_LOG(m_logger, TRACE) << "Instance destroyed.";
}

}  // namespace kvan::io::c
