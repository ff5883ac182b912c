#include "diagnostic.h"

#include <cstdio>
#include <string>

// The last way out for what the logging has to say of itself. It must work when everything else has failed, so it
// throws nothing, takes no lock of the library and allocates only for the place in front of the text; without memory
// the bare text is written.
namespace kvan::logging::impl {

namespace {

const char* wordOf(Severity severity) {
    switch (severity) {
        case Severity::Info:
            return "INFO";
        case Severity::Warn:
            return "WARN";
        case Severity::Error:
            return "ERROR";
    }
    return "???";
}

}  // namespace

void diagnose(Severity severity, std::string_view file, int line, std::string_view text) noexcept {
    try {
        std::string whole(file.substr(file.find_last_of("/\\") + 1));
        whole.append(":").append(std::to_string(line)).append(" ").append(wordOf(severity)).append(" ").append(text);
        if (whole.back() != '\n')
            whole += '\n';
        writeToErrorChannel(whole);
    } catch (...) {
        writeToErrorChannel(text);
    }
}

void writeToErrorChannel(std::string_view formattedLine) noexcept {
    // One call and a flush, so that lines of several threads do not mix and nothing is lost at a crash.
    std::fwrite(formattedLine.data(), 1, formattedLine.size(), stderr);
    std::fflush(stderr);
}

}  // namespace kvan::logging::impl
