#include "last_error.h"

#include <logger/logger.h>

#include <boost/exception/diagnostic_information.hpp>
#include <boost/thread/tss.hpp>
#include <iterator>

#include <utf8.h>

// One text a thread, of the failure that was last there. A success does not clear it, and neither does reading it: a
// caller asks twice, for the size and for the text.
namespace kvan::io::c {

namespace {

/// Never destroyed: a thread may fail while the process is already ending.
boost::thread_specific_ptr<std::string>& slot() {
    static auto* const instance = new boost::thread_specific_ptr<std::string>;  // lint: new: outlives all threads
    return *instance;
}

/// Texts of damaged files may stand in a failure.
std::string inUtf8(const std::string& text) {
    std::string valid;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
    return valid;
}

}  // namespace

void setLastError(const std::string& text) {
    if (slot().get() == nullptr)
        slot().reset(new std::string);  // lint: new: the slot owns it, and takes nothing but a pointer
    *slot() = text;
}

int rememberFailure(const std::exception& fault) noexcept {
    try {
        setLastError(inUtf8(fault.what()));
        const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql.c_dll");
        if (!logger.isEnabled(logging::Level::DEBUG))
            return 0;
        const std::string diagnostics = boost::diagnostic_information(fault, true);
        if (!diagnostics.empty())
            KVAN_LOG(logger, DEBUG) << "Caught std::exception with boost::diagnostic_information = \n" << diagnostics;
    } catch (...) {
        // No memory for the text: the caller still sees the failure in the return value.
    }
    return 0;
}

const char* lastErrorText() {
    return slot().get() == nullptr ? "<no error>" : slot()->c_str();
}

}  // namespace kvan::io::c
