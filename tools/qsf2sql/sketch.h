#pragma once

#include <string>
#include <vector>

namespace qsf2sql_tool {

/// A sketch of a curve in characters: the highest value of each column as a bar, with a scale at both axes. Empty if
/// there is nothing above 0 to draw. `x` ascends and is as long as `y`.
std::string sketch(const std::vector<double>& x, const std::vector<double>& y, const std::string& xName);

}  // namespace qsf2sql_tool
