#pragma once

#include <string>
#include <vector>

namespace kvan::math {

/// Throws `std::invalid_argument` "not initialized correctly, " and `what`.
[[noreturn]] void throwNotInitialized(const std::string& what);

/// Throws `std::invalid_argument` unless there is a knot and all are finite and strictly ascending.
void checkKnots(const std::vector<double>& x);

/// The same, and for another number of values.
void checkPoints(const std::vector<double>& x, const std::vector<double>& y);

}  // namespace kvan::math
