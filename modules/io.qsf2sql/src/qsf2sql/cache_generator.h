#pragma once

#include "qsf2sql/passes/analysis_properties.h"
#include "qsf2sql/passes/extra_pass.h"
#include "qsf2sql/passes/reference_transformator_map.h"
#include "qsf2sql/variable_settings.h"
#include "qsf2sql/variables/acquisition_key_map.h"
#include "qsf2sql/variables/variable_descriptions.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <boost/filesystem/path.hpp>
#include <optional>
#include <string>
#include <unordered_set>

namespace kvan::io {

/// One generation of a cache: four passes over the native files of an analysis.
///
///     1  main file up to its two important blocks    Properties, reference calibrations, declared variables
///     2  index file                                  Spectra: Id, segment, array Ids
///     3  extra file                                  Spectra: the rest; Transformators, Steps, AcquisitionKeys
///     4  main file from there on                     the variables that segments and spectra set
///
/// Spectra data are never read, so the time and the memory go with the number of spectra.
class CacheGenerator {
public:
    /// Fills an open, empty database with the whole cache; nothing is left to do afterwards. The caller has begun a
    /// transaction and commits it. Lives no longer than `database`.
    ///
    /// Throws `Qsf2SqlFileFormatError` and `Qsf2SqlCannotOpenFileError` for the native files, `CppSQLite3Exception` for
    /// the database, `std::runtime_error` where the conditions of the main file contradict one another,
    /// `std::out_of_range` for an impossible acquisition time, `std::bad_cast` for a value whose variable is declared
    /// once more with another type; what a reference calibration that cannot be read and a
    /// calibration that fails at an end of the acquired range throw, and `boost::math::rounding_error` where that end
    /// is no 32-bit mass.
    CacheGenerator(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database, bool allVariables,
                   const std::unordered_set<std::string>& requestedVariables);

private:
    struct WantedVariables {
        bool all;
        const std::unordered_set<std::string>& requested;
    };

    /// What pass 1 learns for the passes and rows behind it.
    struct MainFileHead {
        bool hasCompressionInfo = false;
        bool hasAnalysisHeader = false;
        std::string compressor;  ///< GUID as text; empty if the file names none
        qsf2sql::AnalysisFacts facts;
        qsf2sql::SerialNumberParts serialNumber;

        bool isComplete() const { return hasCompressionInfo && hasAnalysisHeader; }
    };

    void insertRequestedVariables(const std::unordered_set<std::string>& names);
    void fillSqlCacheFromQsf(const boost::filesystem::path& mainFile, bool allVariables,
                             const std::unordered_set<std::string>& requestedVariables);

    MainFileHead scanMainFileHead(QSFBlockedReader& reader, qsf2sql::AnalysisProperties& properties,
                                  const WantedVariables& wanted);
    void readCompressionInfo(QSFBlockedReader& reader, MainFileHead& head);
    void readAnalysisHeader(QSFBlockedReader& reader, MainFileHead& head, qsf2sql::AnalysisProperties& properties,
                            const WantedVariables& wanted);
    void readInstrumentInfo(QSFBlockedReader& reader, MainFileHead& head);
    void readConditions(QSFBlockedReader& reader);

    // Settings that contradict the cache are logged to `logger` and passed over.
    void copySegmentVariables(const qsf2sql::VariableSettings& settings, const logging::Logger& logger);
    void copySpectrumVariables(const qsf2sql::VariableSettings& settings, std::uint32_t spectrumNumber,
                               const logging::Logger& logger);
    /// The bytes of `value` must stay until the parameter is bound anew.
    void insertAnyIntoSQLite(cppsqlite::CppSQLite3Statement& statement, int parameterIndex, qsf2sql::VariableType type,
                             const qsf2sql::VariableValue& value);

    logging::Logger m_logger;
    cppsqlite::CppSQLite3DB& m_database;
    cppsqlite::CppSQLite3Statement m_segmentVariableInsert;
    cppsqlite::CppSQLite3Statement m_spectrumVariableInsert;
    bool m_segmentDuplicateReported = false;
    bool m_spectrumDuplicateReported = false;
    std::optional<std::uint32_t> m_currentSegment;                        // from 1
    std::string m_utf8;                                                   // of the text that is bound
    std::optional<qsf2sql::VariableDescriptions> m_variableDescriptions;  // from ANALYSIS_HEADER on
    qsf2sql::ReferenceTransformatorMap m_references;
    qsf2sql::AcquisitionKeyMap m_keys;
};

}  // namespace kvan::io
