#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kvan::io::calibration {

/// Says which state of a calibration database is wanted. A default selector wants the first state that fits the
/// analysis, for which it needs to be told about the analysis.
struct CalibrationStateSelector {
    std::optional<std::string> key;     ///< this state and no other
    bool descending = false;            ///< the latest of the states that qualify, not the first
    std::optional<std::string> source;  ///< only states of this source
    bool unconditional = false;         ///< no check against the analysis
    std::int64_t frameCount = -1;       ///< highest spectrum number of the analysis, -1 when not told
    bool hasPositive = false;           ///< the analysis has spectra of positive polarity
    bool hasNegative = false;           ///< the analysis has spectra of negative polarity

    bool needsAnalysisInfo() const { return !key && !unconditional; }

    void setAnalysisInfo(std::int64_t frames, bool positive, bool negative) {
        frameCount = frames;
        hasPositive = positive;
        hasNegative = negative;
    }
};

}  // namespace kvan::io::calibration
