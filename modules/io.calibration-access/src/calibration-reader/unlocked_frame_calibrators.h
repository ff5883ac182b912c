#pragma once

#include "calibration-reader/frame_calibrators.h"

#include <sysutils/platform.h>

#include <boost/filesystem/path.hpp>
#include <memory>

namespace kvan::io::calibration {

/// Reads frame calibrators without SQLite's locks, whose eight calls of the system cost more than the read. A
/// connection of its own takes the file for one that nobody writes; what it gave counts only if the file's stamp shows,
/// before and after, that nobody did. Made for many reads: it sets up nothing for the first few.
class UnlockedFrameCalibrators {
public:
    explicit UnlockedFrameCalibrators(std::int64_t state) : m_state(state) {}

    /// As `FrameCalibrators::load`; null whenever that must be done under locks, which a failure is too.
    std::shared_ptr<::kvan::calibration::ICalibrationTransformator> tryLoad(
        std::int64_t frameId, const std::optional<DigitizerConstants>& digitizer);

    /// To be called after each read that succeeded under locks, by the ordinary connection to the file: so many make it
    /// worth to go on without.
    void noteLockedRead(cppsqlite::CppSQLite3DB& locked) noexcept;

private:
    void connect(cppsqlite::CppSQLite3DB& locked);
    bool isUntouched() const { return sys::stampOf(m_file) == m_stamp; }

    std::int64_t m_state;
    boost::filesystem::path m_file;
    std::uint64_t m_lockedReads = 0;
    std::optional<sys::FileStamp> m_stamp;
    std::unique_ptr<cppsqlite::CppSQLite3DB> m_database;
    std::optional<FrameCalibrators> m_calibrators;
};

}  // namespace kvan::io::calibration
