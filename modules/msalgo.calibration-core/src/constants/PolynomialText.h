#pragma once

#include <ostream>
#include <vector>

namespace kvan::calibration::Constants {

/// The values with commas between them.
inline void writeList(std::ostream& sink, const std::vector<double>& values) {
    const char* separator = "";
    for (const double value : values) {
        sink << separator << value;
        separator = ", ";
    }
}

}  // namespace kvan::calibration::Constants
