#pragma once

#include "archive_framing.h"

#include <calibration-core/interfaces/Polarity.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kvan::io::ami {

/// A moment as it stands in the archive, unchecked.
struct CDateTimeTZI {
    void ExtractFromBlob(Stream& stream);

    std::uint16_t year = 0;
    std::uint8_t month = 0;
    std::uint8_t day = 0;
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint16_t milliseconds = 0;
    bool hasZone = false;
    std::uint16_t zone = 0;
};

/// One calibration that was made: on which spectrum, with what, when. Of the masses and calibrators in it nothing
/// is kept; they are in force nowhere.
struct CCalibrationStatus {
    void ExtractFromBlob(Stream& stream);

    std::uint32_t id = 0;
    std::string description;
    std::string spectrumDescription;
    std::uint32_t chromatogramId = 0;
    std::string chromatogramDescription;
    CDateTimeTZI started;
    CDateTimeTZI finished;
    EPolarity polarity = POLARITY_POSITIVE;
    std::uint32_t msmsType = 0;
};

/// What was done to get at the calibrations of a list. No calibrator depends on it.
struct CCalibrationContainer {
    /// The record `CCalibrationStati`.
    void ExtractFromBlob(Stream& stream);

    std::vector<CCalibrationStatus> stati;
};

}  // namespace kvan::io::ami
