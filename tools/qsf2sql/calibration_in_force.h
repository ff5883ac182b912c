#pragma once

#include "analysis.h"

#include <string>
#include <utility>
#include <vector>

namespace qsf2sql_tool {

/// Where m/z of an analysis comes from, in words.
struct CalibrationInForce {
    std::string source;
    /// The stores of re-calibrations that are not in force, each with the reason.
    std::vector<std::pair<std::string, std::string>> others;
};

/// Looks where the library looks, in its order.
CalibrationInForce calibrationInForce(Analysis& analysis);

}  // namespace qsf2sql_tool
