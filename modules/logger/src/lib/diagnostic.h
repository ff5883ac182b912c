#pragma once

#include <string_view>

/// What the logging has to say about itself goes to standard error, since its own sinks may be what has failed.
namespace kvan::logging::impl {

enum class Severity { Info, Warn, Error };

/// One line "file.cpp:12 ERROR text" on standard error, `file` without its directories; a line end is added where the
/// text has none.
void diagnose(Severity severity, std::string_view file, int line, std::string_view text) noexcept;

/// A log line that has no better place, as it is, on standard error.
void writeToErrorChannel(std::string_view formattedLine) noexcept;

}  // namespace kvan::logging::impl

/// KVAN_DIAGNOSE(Warn, text);
#define KVAN_DIAGNOSE(severity, text) \
    ::kvan::logging::impl::diagnose(::kvan::logging::impl::Severity::severity, __FILE__, __LINE__, text)
