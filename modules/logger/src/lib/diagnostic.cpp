#include "diagnostic.h"

#include <cstdio>
#include <string>

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
    std::fwrite(formattedLine.data(), 1, formattedLine.size(), stderr);
    std::fflush(stderr);
}

}  // namespace kvan::logging::impl
