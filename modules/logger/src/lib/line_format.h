#pragma once

#include <logger/logger.h>

#include <string>
#include <string_view>

namespace kvan::logging::impl {

/// "2018-02-03 04:05:06.000007 [tid=0x1f] [INFO ] name: text" and a line feed: the local time and the thread of the
/// call. Line ends after `text` are dropped, those within stay. Throws `std::runtime_error` "could not convert
/// calendar time to local time".
std::string formatLine(std::string_view name, Level::type level, std::string_view text);

/// The level that stands in a line of that form; empty for any other text.
std::optional<Level::type> levelOfLine(std::string_view line);

/// The C library guards the time zone by a lock of its own, which a fork may catch held; nobody of ours is inside
/// between the two calls.
void lockTimeZone();
void unlockTimeZone();

}  // namespace kvan::logging::impl
