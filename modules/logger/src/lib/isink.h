#pragma once

#include <string>

namespace kvan::logging::impl {

/// Where finished lines go. May be called by several threads at once; no exception gets out of `write`.
class ISink {
public:
    ISink() = default;
    ISink(const ISink&) = delete;
    ISink& operator=(const ISink&) = delete;
    virtual ~ISink() = default;

    /// `formattedLine` ends with its line feed.
    virtual void write(const std::string& formattedLine) = 0;
};

}  // namespace kvan::logging::impl
