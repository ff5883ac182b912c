#pragma once

#include <sample-analysis/analysis_data.h>

#include <boost/filesystem/path.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvan::calibration {
class ICalibrationTransformator;
}

namespace kvan::cppsqlite {
class CppSQLite3DB;
class CppSQLite3Statement;
}  // namespace kvan::cppsqlite

/// The calibration database `calibration.sqlite`, as docs/calibration-database.md has it.
namespace kvan::sample::stores {

inline constexpr const char* g_calibrationDatabaseName = "calibration.sqlite";

/// The numbers of one calibration, in the order of the columns of its model. What has no number is NULL.
struct MzCalibration {
    std::int64_t model = 1;
    std::vector<std::optional<double>> numbers = {};  ///< nine at most
    std::optional<Bytes> coefficients = {};           ///< of the correction of model 2: doubles, little-endian
};

/// The calibration of the model that has room for this law: 1 for TOF, 2 for TOF with a correction by a smooth
/// function, 3 for a linear ion trap, 4 and 5 for FTMS. Throws `std::invalid_argument` for any other law.
MzCalibration mzCalibrationOf(const std::shared_ptr<kvan::calibration::ICalibrationTransformator>& transformator);

/// A calibration for all spectra of one polarity, with temperatures in degrees and coefficients in parts per million a
/// degree; coefficients of 0.0 leave the temperatures out of it.
struct MzReference {
    MzCalibration calibration = {};
    double T1 = 0.0;
    double T2 = 0.0;
    double dC1 = 0.0;
    double dC2 = 0.0;
};

/// The time axis of a time of flight: time of the first sample, and from one to the next.
struct Digitizer {
    double delay = 0.0;
    double timebase = 1.0;
};

/// Of a time-of-flight law; throws `std::invalid_argument` for any other.
Digitizer digitizerOf(const kvan::calibration::ICalibrationTransformator& transformator);

/// One re-calibration of an analysis.
struct CalibrationState {
    std::string key = {};
    std::string source = "sample-analysis";
    bool hasFrameCalibrators = true;  ///< one calibration for each spectrum, by `addFrame`
    std::optional<Digitizer> digitizer = {};
    std::optional<MzReference> positive = {};
    std::optional<MzReference> negative = {};
};

struct SchemaVersion {
    int major = 1;
    int minor = 0;
};

/// Writes `calibration.sqlite` into a directory, in place of a file of that name. The file is there after `finish`
/// only. Memory does not grow with the number of frames. Failures of SQLite are `CppSQLite3Exception`.
class CalibrationDatabaseWriter {
public:
    explicit CalibrationDatabaseWriter(const boost::filesystem::path& directory, SchemaVersion version = {});
    ~CalibrationDatabaseWriter();

    /// Begins the next state, of the next Id from 1 on.
    void addState(const CalibrationState& state);
    /// Adds the calibration of the spectrum with that number to the state that was begun last.
    void addFrame(std::int64_t frame, const MzCalibration& calibration);
    void finish();

private:
    std::int64_t addReference(const MzReference& reference);

    boost::filesystem::path m_file;
    boost::filesystem::path m_unfinishedFile;
    std::unique_ptr<cppsqlite::CppSQLite3DB> m_database;
    std::unique_ptr<cppsqlite::CppSQLite3Statement> m_insertFrame;
    std::unique_ptr<cppsqlite::CppSQLite3Statement> m_insertMapping;
    std::int64_t m_state = 0;
    std::int64_t m_references = 0;
    std::int64_t m_frames = 0;
};

}  // namespace kvan::sample::stores

namespace kvan::sample {
using namespace stores;  // callers need not know the room
}
