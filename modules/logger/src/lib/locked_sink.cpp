#include "locked_sink.h"

#include "diagnostic.h"

#include <exception>

namespace kvan::logging::impl {

void LockedSink::write(const std::string& formattedLine) {
    // A sink that fails must not fail its caller: the text of the fault goes to standard error, and the next line is
    // tried.
    try {
        const std::lock_guard<std::mutex> guard(*m_mutex);
        writeLocked(formattedLine);
    } catch (const std::exception& fault) {
        KVAN_DIAGNOSE(Error, fault.what());
    }
}

}  // namespace kvan::logging::impl
