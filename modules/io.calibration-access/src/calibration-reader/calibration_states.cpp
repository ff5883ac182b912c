#include "calibration-reader/calibration_database.h"

// All states with what decides about them, for a person who wants to see why one was chosen. One query, so that all
// rows are of the same moment. A directory without a database has no states; one that cannot be opened, or that lacks a
// table or column of the query, throws.
namespace kvan::io::calibration {

namespace {

/// Number and maximum of the mapped spectra: where both are the number of spectra in the analysis, none is left out.
/// The mapping is not read itself, as it has a row a spectrum.
constexpr const char* g_query =
    "SELECT c.Key, c.Source, c.HasFrameCalibrators, "
    "(SELECT COUNT(*) FROM FrameMzCalibrationMapping m WHERE m.CalibrationState = c.Id), "
    "(SELECT MAX(FrameId) FROM FrameMzCalibrationMapping m WHERE m.CalibrationState = c.Id), "
    "c.PositiveReferenceCalibratorId, c.NegativeReferenceCalibratorId FROM CalibrationState c ORDER BY c.Id";

}  // namespace

std::vector<CalibrationStateSummary> readCalibrationStates(cppsqlite::CppSQLite3DB& database) {
    std::vector<CalibrationStateSummary> states;
    auto row = database.execQuery(g_query);
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
    // Such a state is held against the spectra alone: with a calibration for each of them no reference is asked for.
    if (state.hasFrameCalibrators)
        return {.spectra = state.mappedFrames != selector.frameCount || state.highestFrame != selector.frameCount};
    return {.positive = selector.hasPositive && !state.hasPositiveReference,
            .negative = selector.hasNegative && !state.hasNegativeReference};
}

}  // namespace kvan::io::calibration
