#include "calibration-reader/failure.h"

#include <calibration-access/calibration_state_selector.h>
#include <cppsqlite/simple_checked_query.h>
#include <cppsqlite/sql_text.h>

// One query decides which state of a calibration database is taken; its text is shown when it finds nothing. A state
// fits an analysis when it has a calibration for each spectrum, or a reference for each polarity that occurs. Keys and
// sources are texts of a caller and are quoted. No state is no failure for `findUUID`: the analysis then keeps its own
// calibration.
namespace kvan::io::calibration {

namespace {

std::string order(bool descending) {
    return std::string(" ORDER BY Id ") + (descending ? "DESC" : "ASC") + " LIMIT 1";
}

/// A mapping is complete when its highest frame and the number of its rows are both the number of frames.
std::string completeMapping(const std::string& from, const std::string& frames) {
    return "(SELECT MAX(FrameId) FROM " + from + ")=" + frames + " AND (SELECT COUNT(*) FROM " + from + ")=" + frames;
}

}  // namespace

std::string CalibrationStateSelector::getUUID(cppsqlite::CppSQLite3DB& database) const {
    // The words are those of a checked query, with the query itself.
    if (auto uuid = findUUID(database))
        return *std::move(uuid);
    fail("Query result unexpectedly empty: " + query());
}

std::optional<std::string> CalibrationStateSelector::findUUID(cppsqlite::CppSQLite3DB& database) const {
    if (!key)
        return cppsqlite::simpleOptionalQuery<std::string>(database, query());
    const auto count = cppsqlite::simpleCheckedQuery<std::int64_t>(
        database, "SELECT COUNT(*) FROM CalibrationState WHERE Key=" + cppsqlite::sqlText(*key));
    // A state that was named must be there; to take another one would be a wrong calibration.
    if (count == 0)
        fail("Calibration state [" + *key + "] does not exist");
    return key;
}

std::string CalibrationStateSelector::query() const {
    return unconditional ? unconditionalQuery() : fittingQuery();
}

std::string CalibrationStateSelector::unconditionalQuery() const {
    const std::string condition = source ? "c.Source=" + cppsqlite::sqlText(*source) : "1";
    return "SELECT c.Key FROM CalibrationState c WHERE " + condition + order(descending);
}

std::string CalibrationStateSelector::fittingQuery() const {
    if (frameCount < 0)
        fail("Failed to set Analysis Info frame count before calling getUUID");
    if (!hasPositive && !hasNegative)
        fail("Failed to set Analysis Info polarity before calling getUUID");
    const std::string frames = std::to_string(frameCount);
    std::string query = "SELECT c.Key FROM CalibrationState c WHERE (";
    if (source)
        query += "c.Source=" + cppsqlite::sqlText(*source) + " AND ";
    query += "(c.HasFrameCalibrators=1 AND " +
             completeMapping("FrameMzCalibrationMapping mp WHERE mp.CalibrationState=c.Id", frames) + ")";
    query += std::string(" OR (c.HasFrameCalibrators=0 ") +
             (hasPositive ? "AND c.PositiveReferenceCalibratorId IS NOT NULL" : "") + " " +
             (hasNegative ? "AND c.NegativeReferenceCalibratorId IS NOT NULL" : "") + ") )";
    if (requireTims)
        query += " AND " +
                 completeMapping("TimsCalibrationMapping WHERE TimsCalibrationMapping.CalibrationState=c.Id", frames);
    if (source)
        query += " AND c.Source=" + cppsqlite::sqlText(*source);
    return query + order(descending);
}

}  // namespace kvan::io::calibration
