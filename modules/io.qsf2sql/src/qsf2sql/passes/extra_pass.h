#pragma once

#include "qsf2sql/passes/msms_steps.h"
#include "qsf2sql/passes/number_set.h"
#include "qsf2sql/passes/reference_transformator_map.h"
#include "qsf2sql/qsflib/QuickInfoEntry.h"
#include "qsf2sql/variables/acquisition_key_map.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <boost/filesystem/path.hpp>
#include <memory>

namespace kvan::io::qsf2sql {

/// What the main file says that the extra file is understood by.
struct AnalysisFacts {
    double timebase = -1.0;  ///< seconds a tick
    std::uint16_t instrumentFamily = 0;
};

/// Reads the extra file: completes the rows of `Spectra`, and stores the calibrations and the precursor masses.
class ExtraPass {
public:
    /// Borrows all of it. `keys` and the marks of use in `references` are filled.
    ExtraPass(cppsqlite::CppSQLite3DB& database, const AnalysisFacts& facts, const NumberSet& withoutData,
              ReferenceTransformatorMap& references, AcquisitionKeyMap& keys, const logging::Logger& logger);

    void run(const boost::filesystem::path& extraFile);

private:
    using Transformator = std::shared_ptr<calibration::ICalibrationTransformator>;

    void handle(const KVAN::io::QSF::QuickInfoEntry& entry);
    void bindNothingAcquired();
    void bindAcquired(const KVAN::io::QSF::QuickInfoEntry& entry, const AcquisitionKey& key);
    Transformator transformatorOf(const std::vector<unsigned char>& blob, const AcquisitionKey& key);
    Transformator deserialize(const std::vector<unsigned char>& blob);

    logging::Logger m_logger;
    cppsqlite::CppSQLite3DB& m_database;
    const double m_timebase;
    const NumberSet& m_withoutData;
    ReferenceTransformatorMap& m_references;
    AcquisitionKeyMap& m_keys;
    MsMsSteps m_steps;
    cppsqlite::CppSQLite3Statement m_insertTransformator;
    cppsqlite::CppSQLite3Statement m_updateSpectrum;
    calibration::Transformation::CalibrationTransformatorFactorySerialization m_serialization;
    bool m_missingReferenceReported = false;
    bool m_missingTransformatorReported = false;
};

}  // namespace kvan::io::qsf2sql
