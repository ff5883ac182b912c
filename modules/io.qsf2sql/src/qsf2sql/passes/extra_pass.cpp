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
#include <utility>
#include <vector>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

constexpr char g_updateSpectrum[] =
    "UPDATE Spectra SET Rt = ?, AcquisitionKey = ?, Parent = ?, MzAcqRangeLower = ?, MzAcqRangeUpper = ?, "
    "SumIntensity = ?, MaxIntensity = ?, TransformatorId = ? WHERE Id = ?";

/// Its parameters.
enum : int {
    RT = 1,
    ACQUISITION_KEY,
    PARENT,
    MZ_ACQ_RANGE_LOWER,
    MZ_ACQ_RANGE_UPPER,
    SUM_INTENSITY,
    MAX_INTENSITY,
    TRANSFORMATOR_ID,
    ID
};

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
          m_updateSpectrum(database.compileStatement(g_updateSpectrum)) {}

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
        const std::int64_t transformatorId = m_database.lastRowId();

        const AcquisitionKey key = keyOf(record);
        m_updateSpectrum.bind(RT, static_cast<double>(record.retentionTime) * m_timebase);
        m_updateSpectrum.bind(ACQUISITION_KEY, m_keys.getOrAddId(key));
        if (const auto parent = m_steps.parentOf(number, record.msLevel))
            m_updateSpectrum.bind(PARENT, *parent);
        else
            m_updateSpectrum.bindNull(PARENT);
        if (m_withoutData.contains(number))
            bindNothingAcquired();
        else
            bindAcquired(entry, key);
        m_updateSpectrum.bind(TRANSFORMATOR_ID, transformatorId);
        // Tolerated: a spectrum that the index does not have; the update then meets no row.
        m_updateSpectrum.bind(ID, record.spectrum);
        m_updateSpectrum.execDML();

        m_steps.write(record.spectrum, entry.masses);
    }

    void bindNothingAcquired() {
        for (const int parameter : {MZ_ACQ_RANGE_LOWER, MZ_ACQ_RANGE_UPPER, SUM_INTENSITY, MAX_INTENSITY})
            m_updateSpectrum.bindNull(parameter);
    }

    void bindAcquired(const QuickInfoEntry& entry, const AcquisitionKey& key) {
        const QuickInfoRecord& record = entry.record;
        if (const Transformator transformator = transformatorOf(entry.calibration, key)) {
            const std::int32_t lower = boost::math::iround(transformator->DIndexToMass(double{record.acquiredLower}));
            std::int32_t upper = boost::math::iround(transformator->DIndexToMass(double{record.acquiredUpper}));
            // Tolerated: a range that is empty or reversed.
            if (upper <= lower)
                upper = boost::math::iround(lower + 1.0);  // refuses what 32 bits do not hold
            m_updateSpectrum.bind(MZ_ACQ_RANGE_LOWER, lower);
            m_updateSpectrum.bind(MZ_ACQ_RANGE_UPPER, upper);
        } else {
            m_updateSpectrum.bindNull(MZ_ACQ_RANGE_LOWER);
            m_updateSpectrum.bindNull(MZ_ACQ_RANGE_UPPER);
        }
        m_updateSpectrum.bind(SUM_INTENSITY, double{record.sumIntensity});
        m_updateSpectrum.bind(MAX_INTENSITY, double{record.maxIntensity});
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
