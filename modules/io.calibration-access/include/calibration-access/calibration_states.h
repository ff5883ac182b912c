#pragma once

#include <calibration-access/calibration_state_selector.h>

#include <cstdint>
#include <string>

namespace kvan::io::calibration {

/// What a state of a calibration database offers, so far as its choice depends on it.
struct CalibrationStateSummary {
    std::string key;
    std::string source;
    bool hasFrameCalibrators = false;
    std::int64_t mappedFrames = 0;  ///< spectra with a calibration of their own
    std::int64_t highestFrame = 0;
    bool hasPositiveReference = false;
    bool hasNegativeReference = false;
};

/// What a state lacks to fit the analysis that a selector was given; nothing if it fits.
struct CalibrationStateShortfall {
    bool spectra = false;   ///< it does not map each spectrum from 1 to the highest
    bool positive = false;  ///< it has no reference for the positive polarity, which occurs
    bool negative = false;  ///< the same for the negative polarity
};

/// By the rule of `CalibrationStateSelector`, of a selector that names neither a key nor a source.
CalibrationStateShortfall shortfallOf(const CalibrationStateSummary& state, const CalibrationStateSelector& selector);

}  // namespace kvan::io::calibration
