// Any bytes end in settings that have an answer for every logger, or in an exception.

#include "lib/isink.h"
#include "lib/logger_settings.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvan::logging;
    const std::string document(reinterpret_cast<const char*>(data), size);
    // No input is to make a file where it wants, by its plain name or by character references.
    if (document.find("Rolling") != std::string::npos || document.find("&#") != std::string::npos)
        return 0;
    try {
        const auto settings = impl::LoggerSettings::parse(document, "fuzz");
        for (const char* name : {"a", "a.b", "kvan.io.qsf2sql"}) {
            if (settings.levelOf(name) > Level::FATAL)
                __builtin_trap();
            (void)settings.sinksOf(name);
        }
    } catch (const std::exception&) {
    }
    return 0;
}
