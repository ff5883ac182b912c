#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kvan::cppsqlite {
class CppSQLite3DB;
}

namespace kvan::io::calibration {

/// Says which state of a calibration database is wanted. A default selector wants the first state that fits the
/// analysis, for which it needs to know the analysis. A plain value.
///
/// A state fits when it maps each spectrum from 1 to the highest to a frame calibrator, or when it has no frame
/// calibrators but a reference for every polarity that occurs.
struct CalibrationStateSelector {
    std::optional<std::string> key = {};  ///< this state and no other
    bool descending = false;              ///< the state with the highest Id of those that qualify, not with the lowest
    std::optional<std::string> source = {};  ///< only states of this source
    bool unconditional = false;              ///< no check against the analysis
    std::int64_t frameCount = -1;            ///< highest spectrum number of the analysis, -1 when not known
    bool hasPositive = false;                ///< the analysis has spectra of positive polarity
    bool hasNegative = false;                ///< the analysis has spectra of negative polarity
    bool requireTims = false;                ///< the state must map each spectrum to a TIMS calibration as well

    bool needsAnalysisInfo() const { return !key && !unconditional; }

    void setAnalysisInfo(std::int64_t frames, bool positive, bool negative) {
        frameCount = frames;
        hasPositive = positive;
        hasNegative = negative;
    }

    /// The key of the wanted state. Throws `std::runtime_error` "Query result unexpectedly empty: " and the query where
    /// `findUUID` gives nothing, and what that throws.
    std::string getUUID(cppsqlite::CppSQLite3DB& database) const;

    /// The key of the wanted state; nothing when none fits. Throws `std::runtime_error` for an explicit key that does
    /// not exist, for a state that fits but has no key, and when the analysis is needed and not known;
    /// `CppSQLite3Exception` for a database that cannot be read.
    std::optional<std::string> findUUID(cppsqlite::CppSQLite3DB& database) const;

private:
    std::string query() const;
    std::string unconditionalQuery() const;
    std::string fittingQuery() const;
};

}  // namespace kvan::io::calibration
