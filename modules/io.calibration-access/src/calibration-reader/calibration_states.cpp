#include "calibration-reader/calibration_database.h"

#include <calibration-access/calibration_states.h>

#include <boost/filesystem/path.hpp>

// All states with what decides about them, for a person who wants to see why one was chosen. One query, so that all
// rows are of the same moment.
namespace kvan::io::calibration {

namespace {

constexpr const char* g_query =
    "SELECT c.Key, c.Source, c.HasFrameCalibrators, "
    "(SELECT COUNT(*) FROM FrameMzCalibrationMapping m WHERE m.CalibrationState = c.Id), "
    "(SELECT MAX(FrameId) FROM FrameMzCalibrationMapping m WHERE m.CalibrationState = c.Id), "
    "c.PositiveReferenceCalibratorId, c.NegativeReferenceCalibratorId FROM CalibrationState c ORDER BY c.Id";

}  // namespace

std::vector<CalibrationStateSummary> readCalibrationStates(const boost::filesystem::path& analysisDirectory) {
    std::vector<CalibrationStateSummary> states;
    const auto file = calibrationFile(analysisDirectory);
    if (!isThere(file))
        return states;
    const auto database = openCalibrationDatabase(file);
    auto row = database->execQuery(g_query);
    for (; !row.eof(); row.nextRow())
        states.push_back({.key = std::string(row.fieldValue(0)),
                          .source = std::string(row.fieldValue(1)),
                          .hasFrameCalibrators = row.getIntField(2) != 0,
                          .mappedFrames = row.getInt64Field(3),
                          .highestFrame = row.getInt64Field(4),
                          .hasPositiveReference = !row.fieldIsNull(5),
                          .hasNegativeReference = !row.fieldIsNull(6)});
    return states;
}

CalibrationStateShortfall shortfallOf(const CalibrationStateSummary& state, const CalibrationStateSelector& selector) {
    if (state.hasFrameCalibrators)
        return {.spectra = state.mappedFrames != selector.frameCount || state.highestFrame != selector.frameCount};
    return {.positive = selector.hasPositive && !state.hasPositiveReference,
            .negative = selector.hasNegative && !state.hasNegativeReference};
}

}  // namespace kvan::io::calibration
