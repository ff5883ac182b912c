#pragma once

#include <logger/logger.h>

#include <array>
#include <optional>
#include <string_view>

namespace kvan::logging::impl {

/// By ordinal; lines and configurations use the same words.
constexpr std::array<std::string_view, 6> g_levelNames = {"TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"};
constexpr std::size_t g_levelNameWidth = 5;

/// Empty for anything but one of the six words, exactly.
constexpr std::optional<Level::type> levelOfName(std::string_view name) {
    for (unsigned level = 0; level < g_levelNames.size(); ++level) {
        if (g_levelNames[level] == name)
            return static_cast<Level::type>(level);
    }
    return std::nullopt;
}

}  // namespace kvan::logging::impl
