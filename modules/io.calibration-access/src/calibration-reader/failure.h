#pragma once

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::io::calibration {

/// Throws `std::runtime_error` with that text.
[[noreturn]] inline void fail(const std::string& text) {
    BOOST_THROW_EXCEPTION(std::runtime_error(text));
}

}  // namespace kvan::io::calibration
