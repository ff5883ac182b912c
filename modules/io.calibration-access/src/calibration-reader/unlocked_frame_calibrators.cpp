#include "calibration-reader/unlocked_frame_calibrators.h"

#include "calibration-reader/calibration_database.h"

// Reads that take no locks count only if the file is proved unwritten: its stamp (device, number, size, times) is taken
// under a lock, lies long enough in the past to tell a next write, and is the same before and after each read. On any
// doubt the answer is null and the caller reads under locks, which also finds the words for a failure. A first set-up
// after 16 reads under locks, another try after each 1024, since a set-up costs several reads.
namespace kvan::io::calibration {

namespace {

/// Holds one state of a database; while it lasts no writer can change the file, unless in write-ahead mode.
class ReadTransaction {
public:
    explicit ReadTransaction(cppsqlite::CppSQLite3DB& database) : m_database(database) {
        m_database.execDML("BEGIN");
        m_database.execScalar("SELECT COUNT(*) FROM GlobalMetadata");  // the lock comes with the first row
    }
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;
    ~ReadTransaction() {
        try {
            m_database.execDML("COMMIT");
        } catch (const cppsqlite::CppSQLite3Exception&) {
            // Nothing was written.
        }
    }

private:
    cppsqlite::CppSQLite3DB& m_database;
};

}  // namespace

std::shared_ptr<::kvan::calibration::ICalibrationTransformator> UnlockedFrameCalibrators::tryLoad(
    std::int64_t frameId, const std::optional<DigitizerConstants>& digitizer) {
    if (!m_calibrators)
        return nullptr;
    try {
        // Before: pages that SQLite has kept may be older than the file.
        if (isUntouched()) {
            auto transformator = m_calibrators->load(frameId, digitizer);
            // After: what was read may be half of a change.
            if (isUntouched())
                return transformator;
        }
        m_calibrators.reset();
    } catch (const std::exception&) {
        // Whatever a writer in between may have made of the read: under locks it shows or it is none.
    }
    return nullptr;
}

void UnlockedFrameCalibrators::noteLockedRead(cppsqlite::CppSQLite3DB& locked) noexcept {
    constexpr std::uint64_t first = 16;
    constexpr std::uint64_t interval = 1024;
    if (++m_lockedReads % interval != first || m_calibrators)
        return;
    try {
        connect(locked);
    } catch (const std::exception&) {
        // Then reads go on under locks.
    }
}

void UnlockedFrameCalibrators::connect(cppsqlite::CppSQLite3DB& locked) {
    const ReadTransaction nobodyWrites(locked);
    m_file = sys::pathFromUtf8(locked.fileName());
    m_stamp = sys::stampOf(m_file);
    // The name may be another file's by now. A write-ahead log changes the database without a change to its file.
    if (!m_stamp || !m_stamp->isAtRest() || !sys::hasDependableStamps(m_file) || locked.wasMoved() ||
        locked.usesWriteAheadLog())
        return;
    m_database = connectToCalibrationDatabase(m_file, cppsqlite::CppSQLite3DB::OpenMode::Frozen);
    m_calibrators.emplace(*m_database, m_state);
}

}  // namespace kvan::io::calibration
