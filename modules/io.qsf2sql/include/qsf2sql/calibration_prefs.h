#pragma once

#include <calibration-access/calibration_state_selector.h>

#include <optional>

namespace kvan::io {

/// Which re-calibration of an analysis may take the place of the calibration stored in the native file.
struct CalibrationPrefs {
    /// The state of `calibration.sqlite` that is wanted; absent: the file is not consulted.
    std::optional<calibration::CalibrationStateSelector> stateSelector;
    /// Whether `Calibrator.ami` may be consulted.
    bool useCalibratorAmi = false;

    /// `raw`: the calibration of the native file, whatever else there is. Otherwise either store, by default choice.
    static CalibrationPrefs fromRawFlag(bool raw) {
        if (raw)
            return {};
        return {calibration::CalibrationStateSelector{}, true};
    }
};

}  // namespace kvan::io
