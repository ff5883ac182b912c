#include "locked_sink.h"

#include "diagnostic.h"

#include <exception>

namespace kvan::logging::impl {

void LockedSink::write(const std::string& formattedLine) {
    try {
        const std::lock_guard<std::mutex> guard(*m_mutex);
        writeLocked(formattedLine);
    } catch (const std::exception& fault) {
        KVAN_DIAGNOSE(Error, fault.what());
    }
}

}  // namespace kvan::logging::impl
