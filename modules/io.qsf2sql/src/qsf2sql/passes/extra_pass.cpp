#include "qsf2sql/passes/extra_pass.h"

#include "qsf2sql/passes/msms_steps.h"
#include "qsf2sql/passes/side_file_scan.h"
#include "qsf2sql/qsflib/QuickInfoEntry.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <boost/math/special_functions/round.hpp>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

/// What a quick-info record adds to the row of its spectrum; what it does not know becomes NULL.
struct SpectrumUpdate {
    std::optional<double> retentionTime;  // seconds
    std::optional<std::int32_t> acquisitionKey;
    std::optional<std::int64_t> parent;
    std::optional<std::int32_t> acquiredLower;  // m/z
    std::optional<std::int32_t> acquiredUpper;
    std::optional<double> sumIntensity;
    std::optional<double> maxIntensity;
    std::optional<std::int64_t> transformatorId;
};

template <auto Member>
void bindUpdated(cppsqlite::CppSQLite3Statement& statement, int parameter, const SpectrumUpdate& update) {
    if (const auto& value = update.*Member)
        statement.bind(parameter, *value);
    else
        statement.bindNull(parameter);
}

/// A column that the update sets. Statement and binding both follow the table, so its order is theirs.
struct UpdatedColumn {
    const char* name;
    decltype(&bindUpdated<&SpectrumUpdate::parent>) bind;
};

constexpr UpdatedColumn g_updatedColumns[] = {
    {"Rt", bindUpdated<&SpectrumUpdate::retentionTime>},
    {"AcquisitionKey", bindUpdated<&SpectrumUpdate::acquisitionKey>},
    {"Parent", bindUpdated<&SpectrumUpdate::parent>},
    {"MzAcqRangeLower", bindUpdated<&SpectrumUpdate::acquiredLower>},
    {"MzAcqRangeUpper", bindUpdated<&SpectrumUpdate::acquiredUpper>},
    {"SumIntensity", bindUpdated<&SpectrumUpdate::sumIntensity>},
    {"MaxIntensity", bindUpdated<&SpectrumUpdate::maxIntensity>},
    {"TransformatorId", bindUpdated<&SpectrumUpdate::transformatorId>},
};

std::string spectrumUpdate() {
    std::string sql = "UPDATE Spectra SET ";
    const char* separator = "";
    for (const UpdatedColumn& column : g_updatedColumns) {
        sql.append(separator).append(column.name).append(" = ?");
        separator = ", ";
    }
    return sql + " WHERE Id = ?";
}

AcquisitionKey keyOf(const QuickInfoRecord& record) {
    return {record.polarity, record.scanMode, record.acquisitionMode, record.msLevel};
}

using Transformator = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

// In come quick-info records in file order, one a spectrum, each with its calibration and its precursor masses. What
// the index pass inserted is updated; a record whose spectrum is not there updates nothing, which is no fault, and its
// calibration, key and steps are stored all the same.
//
// The range of acquired masses is the only thing that is computed here: with the reference calibration of the
// spectrum's key, else with its own. A calibration of its own that cannot be read leaves the range empty; one that
// fails at an end of the range ends the generation, as does a damaged record.
class ExtraPass {
public:
    ExtraPass(const AnalysisFacts& facts, const NumberSet& withoutData, ReferenceTransformatorMap references,
              cppsqlite::CppSQLite3DB& database, const logging::Logger& logger)
        : m_logger(logger),
          m_database(database),
          m_timebase(facts.timebase),
          m_withoutData(withoutData),
          m_references(std::move(references)),
          m_steps(database, facts.instrumentFamily, logger),
          m_insertTransformator(database.compileStatement("INSERT INTO Transformators (Blob) VALUES (?)")),
          m_updateSpectrum(database.compileStatement(spectrumUpdate())) {}

    AcquisitionKeyMap run(QSFBlockedReader& reader) {
        SideFileScan scan(reader, g_extraFileHead, m_logger);
        QuickInfoEntry entry;
        while (const auto container = scan.nextEntry()) {
            entry.Read(reader, container->end());
            handle(entry);
        }
        KVAN_LOG(m_logger, TRACE) << "XTR file scanned successfully.";
        // After all spectra: only references that one of them asked for are stored.
        m_references.writeTo(m_database, m_keys, m_insertTransformator);
        m_keys.writeTo(m_database);
        return std::move(m_keys);
    }

private:
    void handle(const QuickInfoEntry& entry) {
        const QuickInfoRecord& record = entry.record;
        const std::uint32_t number = record.spectrum - 1;
        KVAN_LOG(m_logger, TRACE) << "Quickinfo entry for spectrum condition #" << number;

        // One row a spectrum, also where two calibrations are equal.
        m_insertTransformator.bindBorrowed(1, entry.calibration.data(), entry.calibration.size());
        m_insertTransformator.execDML();

        const AcquisitionKey key = keyOf(record);
        SpectrumUpdate update;
        update.transformatorId = m_database.lastRowId();
        update.retentionTime = static_cast<double>(record.retentionTime) * m_timebase;
        update.acquisitionKey = m_keys.getOrAddId(key);
        update.parent = m_steps.parentOf(number, record.msLevel);
        if (!m_withoutData.contains(number))
            setAcquired(entry, key, update);
        write(record.spectrum, update);

        m_steps.write(record.spectrum, entry.masses);
    }

    void write(std::uint32_t spectrum, const SpectrumUpdate& update) {
        int parameter = 0;
        for (const UpdatedColumn& column : g_updatedColumns)
            column.bind(m_updateSpectrum, ++parameter, update);
        // Tolerated: a spectrum that the index does not have; the update then meets no row.
        m_updateSpectrum.bind(++parameter, spectrum);
        m_updateSpectrum.execDML();
    }

    void setAcquired(const QuickInfoEntry& entry, const AcquisitionKey& key, SpectrumUpdate& update) {
        const QuickInfoRecord& record = entry.record;
        if (const Transformator transformator = transformatorOf(entry.calibration, key)) {
            const std::int32_t lower = boost::math::iround(transformator->DIndexToMass(double{record.acquiredLower}));
            std::int32_t upper = boost::math::iround(transformator->DIndexToMass(double{record.acquiredUpper}));
            // Tolerated: a range that is empty or reversed.
            if (upper <= lower)
                upper = boost::math::iround(lower + 1.0);  // refuses what 32 bits do not hold
            update.acquiredLower = lower;
            update.acquiredUpper = upper;
        }
        update.sumIntensity = double{record.sumIntensity};
        update.maxIntensity = double{record.maxIntensity};
    }

    /// The two faults are logged once a generation: a file that has one of them has it in every spectrum.
    Transformator transformatorOf(const std::vector<unsigned char>& blob, const AcquisitionKey& key) {
        if (const Transformator reference = m_references.lookup(key))
            return reference;
        if (!std::exchange(m_missingReferenceReported, true)) {
            KVAN_LOG(m_logger, DEBUG) << "Can't find reference transformator for " << key
                                      << ". Using spectrum transformator.";
        }

        Transformator own = deserialize(blob);
        if (!own && !std::exchange(m_missingTransformatorReported, true)) {
            KVAN_LOG(m_logger, DEBUG) << "Spectrum has no transformator. Leaving MzAcqRange empty.";
        }
        return own;
    }

    /// Tolerated: a calibration that cannot be read. Whoever asks for the m/z array of the spectrum gets the failure.
    Transformator deserialize(const std::vector<unsigned char>& blob) {
        try {
            return m_serialization.DeserializeFromBlob(blob);
        } catch (const std::exception& fault) {
            KVAN_LOG(m_logger, DEBUG) << "Exception while deserializing spectrum transformator: " << fault.what();
            return nullptr;
        }
    }

    const logging::Logger& m_logger;
    cppsqlite::CppSQLite3DB& m_database;
    const double m_timebase;  // seconds a tick
    const NumberSet& m_withoutData;
    ReferenceTransformatorMap m_references;
    AcquisitionKeyMap m_keys;
    MsMsSteps m_steps;
    cppsqlite::CppSQLite3Statement m_insertTransformator;
    cppsqlite::CppSQLite3Statement m_updateSpectrum;
    kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization m_serialization;
    bool m_missingReferenceReported = false;
    bool m_missingTransformatorReported = false;
};

}  // namespace

AcquisitionKeyMap readExtraFile(const boost::filesystem::path& extraFile, const AnalysisFacts& facts,
                                const NumberSet& withoutData, ReferenceTransformatorMap references,
                                cppsqlite::CppSQLite3DB& database, const logging::Logger& logger) {
    QSFBlockedReader reader(extraFile, QSFBlockedReader::Access::Scan);
    KVAN_LOG(logger, TRACE) << "XTR file opened successfully.";
    return ExtraPass(facts, withoutData, std::move(references), database, logger).run(reader);
}

}  // namespace kvan::io::qsf2sql::passes
