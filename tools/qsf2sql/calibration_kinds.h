#pragma once

#include "row.h"

#include <string>

namespace qsf2sql_tool {

/// The laws of the calibrations that the spectra were acquired with, the most frequent first, with the number of
/// spectra where there is more than one: "time of flight, quadratic"; "none" without any.
std::string calibrationKinds(Database& database);

}  // namespace qsf2sql_tool
