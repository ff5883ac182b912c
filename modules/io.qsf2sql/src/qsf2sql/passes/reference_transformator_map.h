#pragma once

#include "qsf2sql/qsflib/CalibrationBlock.h"
#include "qsf2sql/variables/acquisition_key_map.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <memory>
#include <unordered_map>
#include <vector>

namespace kvan::io::qsf2sql::passes {

/// The reference calibrations of an analysis by acquisition key, those for MS^1 apart from those for MS^n. Remembers
/// which of them were used: only these reach the cache.
class ReferenceTransformatorMap {
public:
    explicit ReferenceTransformatorMap(const logging::Logger& logger) : m_logger(logger) {}

    /// Adds the calibrations of the analysis header; of one key the first stays. A block that gives no transformator,
    /// or one without measurement mode, is logged and passed over; one that cannot be read throws what its reading
    /// throws.
    void populate(const std::vector<std::shared_ptr<KVAN::io::QSF::CalibrationBlock>>& blocks);

    /// The calibration for `key`, now marked as used, else null. A key of MS^n falls back on MS^1, where scan mode 2
    /// counts as 0.
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> lookup(AcquisitionKey key);

    /// Stores the calibrations that were used, those for MS^1 first, and fills the table `ReferenceTransformators`. A
    /// key that `keys` does not hold gets the Id -1.
    void writeTo(cppsqlite::CppSQLite3DB& database, const AcquisitionKeyMap& keys,
                 cppsqlite::CppSQLite3Statement& transformatorInsert) const;

private:
    struct Entry {
        AcquisitionKey key;
        std::vector<unsigned char> blob;
        std::shared_ptr<kvan::calibration::ICalibrationTransformator> transformator;
        bool isUsed = false;
    };

    /// Entries in order of insertion, found by key.
    struct Level {
        std::vector<Entry> entries;
        std::unordered_map<AcquisitionKey, std::size_t, AcquisitionKeyHash> byKey;

        void add(Entry entry);
        std::shared_ptr<kvan::calibration::ICalibrationTransformator> use(const AcquisitionKey& key);
    };

    logging::Logger m_logger;
    Level m_ms1;
    Level m_msn;
};

}  // namespace kvan::io::qsf2sql::passes
