#pragma once

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::compression {

/// The failure of a slot whose element type a compressor does not know, such as "vlc compressor: float compression not
/// supported".
[[noreturn]] inline void throwUnsupported(const char* compressor, const char* slot) {
    BOOST_THROW_EXCEPTION(std::runtime_error(std::string(compressor) + " compressor: " + slot + " not supported"));
}

}  // namespace kvan::compression
