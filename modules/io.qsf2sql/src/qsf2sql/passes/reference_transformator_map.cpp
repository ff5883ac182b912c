#include "qsf2sql/passes/reference_transformator_map.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>

#include <utility>

namespace kvan::io::qsf2sql::passes {

using kvan::calibration::ICalibrationTransformator;

namespace {

// In come the calibrations of the analysis header, each for one acquisition key. The range of acquired masses of a
// spectrum is computed with the reference of its key where there is one.
//
// Tolerated: a reference that gives no transformator or does not say its key, and a second one of a key; all three are
// passed over. One that cannot be read at all ends the generation, as any damaged block does.

// MS/MS counts as a variant of MS where the reference for MS^1 stands in.
constexpr std::uint32_t g_scanModeMs = 0;
constexpr std::uint32_t g_scanModeMsMs = 2;

AcquisitionKey keyOf(const kvan::calibration::IMeasurementModeInfo& mode) {
    return {mode.GetPolarity(), mode.GetScanMode(), mode.GetAcquisitionMode(), mode.GetMSMSLevel()};
}

}  // namespace

void ReferenceTransformatorMap::populate(const std::vector<std::shared_ptr<KVAN::io::QSF::CalibrationBlock>>& blocks) {
    const kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization serialization;
    for (const auto& block : blocks) {
        const std::shared_ptr<ICalibrationTransformator> transformator = serialization.DeserializeFromBlob(block->blob);
        if (!transformator) {
            KVAN_LOG(m_logger, WARN) << "Skipping reference calibration without transformator.";
            continue;
        }
        const auto mode = transformator->GetMeasurementModeInfo();
        if (!mode) {
            KVAN_LOG(m_logger, WARN) << "Skipping reference calibration without measurement mode.";
            continue;
        }
        const AcquisitionKey key = keyOf(*mode);
        KVAN_LOG(m_logger, TRACE) << "Populating RefTrafos for " << key;
        (key.msLevel == 0 ? m_ms1 : m_msn).add({key, block->blob, transformator});
    }
}

std::shared_ptr<ICalibrationTransformator> ReferenceTransformatorMap::lookup(AcquisitionKey key) {
    if (key.msLevel != 0) {
        if (auto found = m_msn.use(key))
            return found;
        key.msLevel = 0;
        if (key.scanMode == g_scanModeMsMs)
            key.scanMode = g_scanModeMs;
    }
    return m_ms1.use(key);
}

// References follow the spectra's own calibrations in `Transformators`. Keys are looked up and not added: the table of
// keys lists what spectra have.
void ReferenceTransformatorMap::writeTo(cppsqlite::CppSQLite3DB& database, const AcquisitionKeyMap& keys,
                                        cppsqlite::CppSQLite3Statement& transformatorInsert) const {
    auto insert =
        database.compileStatement("INSERT INTO ReferenceTransformators (AcquisitionKey,TransformatorId) VALUES (?,?)");
    for (const Level* const level : {&m_ms1, &m_msn}) {
        for (const Entry& entry : level->entries) {
            if (!entry.isUsed)
                continue;
            transformatorInsert.bindBorrowed(1, entry.blob.data(), entry.blob.size());
            transformatorInsert.execDML();
            insert.bind(1, keys.findId(entry.key).value_or(-1));
            insert.bind(2, database.lastRowId());
            insert.execDML();
        }
    }
}

void ReferenceTransformatorMap::Level::add(Entry entry) {
    if (byKey.try_emplace(entry.key, entries.size()).second)
        entries.push_back(std::move(entry));
}

std::shared_ptr<ICalibrationTransformator> ReferenceTransformatorMap::Level::use(const AcquisitionKey& key) {
    const auto found = byKey.find(key);
    if (found == byKey.end())
        return nullptr;
    Entry& entry = entries[found->second];
    entry.isUsed = true;
    return entry.transformator;
}

}  // namespace kvan::io::qsf2sql::passes
