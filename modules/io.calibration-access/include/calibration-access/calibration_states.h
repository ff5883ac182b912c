#pragma once

#include <sysutils/boost_fwd.h>

#include <cstdint>
#include <string>
#include <vector>

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

/// The states of the calibration database in the directory by their Ids; none without a database. Throws as
/// `CalibrationReaderSqlite::find`.
std::vector<CalibrationStateSummary> readCalibrationStates(const boost::filesystem::path& analysisDirectory);

}  // namespace kvan::io::calibration
