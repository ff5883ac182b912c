#include "storage_handle.h"

#include <sysutils/platform.h>

#include <algorithm>

namespace kvan::io::c {

StorageHandle::StorageHandle(const std::string& utf8Path, bool rawCalibration)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.c_dll")),
      m_storage(sys::pathFromUtf8(utf8Path), CalibrationPrefs::fromRawFlag(rawCalibration), VariablesPrefs{}) {
    KVAN_LOG(m_logger, TRACE) << "Instance created.";
}

StorageHandle::~StorageHandle() {
    KVAN_LOG(m_logger, TRACE) << "Instance destroyed.";
}

template <class T>
void StorageHandle::readArray(std::uint64_t id, T* out) {
    if (const auto elements = m_storage.readArrayData<T>(id, scratch(out)))
        std::copy(elements->begin(), elements->end(), out);
}

template void StorageHandle::readArray(std::uint64_t, double*);
template void StorageHandle::readArray(std::uint64_t, float*);
template void StorageHandle::readArray(std::uint64_t, unsigned int*);

}  // namespace kvan::io::c
