#include "qsf2sql/cache_generator.h"

#include "qsf2sql/cache/cache_schema.h"
#include "qsf2sql/passes/index_pass.h"
#include "qsf2sql/qsflib/CompressionInfoBlock.h"
#include "qsf2sql/qsflib/InstrumentInfoBlock.h"
#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"
#include "qsf2sql/variables/windows_1252.h"

#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

#include <boost/any.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <variant>

namespace kvan::io {

using namespace KVAN::io::QSF;

namespace {

/// Holds the rows of 100,000 spectra, so that the update pass and the indexes find them in memory; a tenth of the time.
constexpr char g_pageCache[] = "PRAGMA cache_size=-32768";  // KiB

/// Not failing here: a side file that is missing is reported when its pass opens it.
std::string sizeText(const boost::filesystem::path& file) {
    boost::system::error_code ignored;
    return std::to_string(boost::filesystem::file_size(file, ignored));
}

boost::filesystem::path sibling(boost::filesystem::path mainFile, const char* extension) {
    return mainFile.replace_extension(extension);
}

/// Type of the block at the reader's position, which stays.
std::uint16_t peekType(QSFBlockedReader& reader) {
    const auto header = readRecord<RESOURCE_HEADER>(reader);
    reader.skip(-static_cast<std::int64_t>(sizeof header));
    return header.type;
}

[[noreturn]] void failFormat(const char* fault) {
    BOOST_THROW_EXCEPTION(Qsf2SqlFileFormatError(fault));
}

void requireConsistent(bool condition, const char* fault) {
    if (!condition)
        BOOST_THROW_EXCEPTION(std::runtime_error(fault));
}

template <class Alternative>
const Alternative& valueAs(const qsf2sql::VariableValue& value) {
    const auto* const held = std::get_if<Alternative>(&value);
    if (held == nullptr)
        BOOST_THROW_EXCEPTION(boost::bad_any_cast());
    return *held;
}

void bindBlob(cppsqlite::CppSQLite3Statement& statement, int parameter, std::string_view bytes) {
    statement.bindBorrowed(parameter, bytes.data(), bytes.size());
}

/// False where the table holds a row of the same key already.
bool insertRow(cppsqlite::CppSQLite3Statement& statement) {
    constexpr int constraintViolated = 19;
    try {
        statement.execDML();
    } catch (const cppsqlite::CppSQLite3Exception& fault) {
        if (fault.errorCode() != constraintViolated)
            throw;
        return false;
    }
    return true;
}

}  // namespace

CacheGenerator::CacheGenerator(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database,
                               bool allVariables, const std::unordered_set<std::string>& requestedVariables)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.CacheGenerator")),
      m_database(database),
      m_references(m_logger) {
    m_database.execDML(g_pageCache);
    for (const char* const statement : qsf2sql::g_createTables)
        m_database.execDML(statement);
    m_segmentVariableInsert = m_database.compileStatement(
        "INSERT INTO PerSegAcqKeyVariables (Segment,AcquisitionKey,Variable,Value) VALUES (?,?,?,?)");
    m_spectrumVariableInsert =
        m_database.compileStatement("INSERT INTO PerSpectrumVariables (Spectrum,Variable,Value) VALUES (?,?,?)");
    insertRequestedVariables(requestedVariables);
    fillSqlCacheFromQsf(mainFile, allVariables, requestedVariables);
}

void CacheGenerator::insertRequestedVariables(const std::unordered_set<std::string>& names) {
    auto insert = m_database.compileStatement("INSERT INTO RequestedVariables (RequestedVariable) VALUES (?)");
    for (const std::string& name : names) {
        insert.bindBorrowed(1, name);
        insert.execDML();
    }
}

void CacheGenerator::fillSqlCacheFromQsf(const boost::filesystem::path& mainFile, bool allVariables,
                                         const std::unordered_set<std::string>& requestedVariables) {
    const boost::filesystem::path indexFile = sibling(mainFile, ".qsf_idx");
    const boost::filesystem::path extraFile = sibling(mainFile, ".qsf_xtr");
    KVAN_LOG(m_logger, TRACE) << "QSF_IDX: " << sys::pathToUtf8(indexFile);
    KVAN_LOG(m_logger, TRACE) << "QSF_XTR: " << sys::pathToUtf8(extraFile);
    QSFBlockedReader reader(mainFile, QSFBlockedReader::Access::Scan);
    KVAN_LOG(m_logger, TRACE) << "QSF file opened successfully.";

    qsf2sql::AnalysisProperties properties(m_database);
    properties.insert("SchemaType", "Qsf2Sql");
    const MainFileHead head = scanMainFileHead(reader, properties, {allVariables, requestedVariables});
    properties.insert("InstrumentSerialNumber", qsf2sql::instrumentSerialNumber(head.serialNumber));
    if (!head.isComplete())
        failFormat("Important blocks missing from main QSF file.");
    KVAN_LOG(m_logger, TRACE) << "QSF file scanned successfully.";
    const std::string infoInsert =
        "INSERT INTO Info (SchemaVersion, QSFSize, IDXSize, XTRSize, Compressor, AllVariables) VALUES ('" +
        std::string(qsf2sql::g_schemaVersion) + "'," + sizeText(mainFile) + "," + sizeText(indexFile) + "," +
        sizeText(extraFile) + ",'" + head.compressor + "'," + (allVariables ? "1" : "0") + ")";

    const qsf2sql::NumberSet withoutData = qsf2sql::IndexPass(m_database, m_logger).run(indexFile);
    qsf2sql::ExtraPass(m_database, head.facts, withoutData, m_references, m_keys, m_logger).run(extraFile);
    readConditions(reader);

    m_variableDescriptions->writeTo(m_database);
    for (const char* const statement : qsf2sql::g_createIndexes)
        m_database.execDML(statement);
    m_database.execDML(infoInsert);
}

CacheGenerator::MainFileHead CacheGenerator::scanMainFileHead(QSFBlockedReader& reader,
                                                              qsf2sql::AnalysisProperties& properties,
                                                              const WantedVariables& wanted) {
    MainFileHead head;
    while (!head.isComplete() && reader.nextBlock() != 0) {
        switch (peekType(reader)) {
            case COMPRESSION_INFO:
                readCompressionInfo(reader, head);
                break;
            case ANALYSIS_HEADER:
                readAnalysisHeader(reader, head, properties, wanted);
                break;
            case INSTRUMENT_INFO:
                readInstrumentInfo(reader, head);
                break;
            default:
                break;
        }
        reader.blockPosition += reader.blockSize;
    }
    return head;
}

void CacheGenerator::readCompressionInfo(QSFBlockedReader& reader, MainFileHead& head) {
    KVAN_LOG(m_logger, TRACE) << "COMPRESSION_INFO found.";
    CompressionInfoBlock block;
    block.Read(reader);
    if (block.compressors.size() > 1)
        failFormat("Don't know how to handle more than one COMPRESSION INFO ENTRY.");
    if (!block.compressors.empty()) {
        head.compressor = block.compressors.front();
        KVAN_LOG(m_logger, TRACE) << "Using compressor " << head.compressor;
    }
    head.hasCompressionInfo = true;
}

void CacheGenerator::readAnalysisHeader(QSFBlockedReader& reader, MainFileHead& head,
                                        qsf2sql::AnalysisProperties& properties, const WantedVariables& wanted) {
    KVAN_LOG(m_logger, TRACE) << "ANALYSIS_HEADER found.";
    AnalysisHeaderBlock block;
    block.Read(reader);
    head.facts.timebase = block.header.timebase * 1.0e-6;
    KVAN_LOG(m_logger, TRACE) << "Timebase is " << head.facts.timebase << "s";
    KVAN_LOG(m_logger, TRACE) << "Analysis header pool contains " << block.calibrations.size()
                              << " reference transformators.";
    m_references.populate(block.calibrations);
    if (!block.description)
        failFormat("Analysis description missing from main QSF file.");
    head.serialNumber.fallback = block.description->serialFallback;
    properties.insertAll(block.header, *block.description);
    head.facts.instrumentFamily = block.description->instrumentFamily;
    m_variableDescriptions.emplace(block.variables ? *block.variables : VarTabDescBlock(), qsf2sql::g_builtInVariables,
                                   wanted.all, wanted.requested);
    head.hasAnalysisHeader = true;
}

void CacheGenerator::readInstrumentInfo(QSFBlockedReader& reader, MainFileHead& head) {
    KVAN_LOG(m_logger, TRACE) << "INSTRUMENT_INFO found.";
    InstrumentInfoBlock block;
    block.Read(reader);
    head.serialNumber.textA = block.textA;
    head.serialNumber.textB = block.textB;
}

void CacheGenerator::readConditions(QSFBlockedReader& reader) {
    KVAN_LOG(m_logger, TRACE) << "Now reading variable tables.";
    const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql.vartab");
    SegmentConditionBlock segmentCondition;
    SpectrumConditionBlock spectrumCondition;
    qsf2sql::VariableSettings settings(*m_variableDescriptions, m_keys);
    m_currentSegment.reset();

    for (bool atEnd = false; !atEnd && reader.nextBlock() != 0; reader.blockPosition += reader.blockSize) {
        switch (peekType(reader)) {
            case RESTYPE_SEGMENT_CONDITION: {
                segmentCondition.Read(reader);
                const std::uint32_t segment = segmentCondition.header.segment;
                KVAN_LOG(logger, TRACE) << "QSF: segment condition #" << segment;
                m_currentSegment = m_currentSegment.value_or(0) + 1;
                requireConsistent(segment == *m_currentSegment,
                                  "Expected consecutive numbering of segments starting at one.");
                settings.read(segmentCondition);
                settings.dump();
                copySegmentVariables(settings, logger);
                break;
            }
            case RESTYPE_SPECTRUM_CONDITION: {
                spectrumCondition.Read(reader);
                const SpectrumConditionRecord& condition = spectrumCondition.header;
                KVAN_LOG(logger, TRACE) << "QSF: Spectrum condition #" << condition.spectrum << " for segment #"
                                        << condition.segment;
                requireConsistent(m_currentSegment == condition.segment,
                                  "File format problem: expected different segment.");
                settings.read(spectrumCondition);
                settings.dump();
                copySpectrumVariables(settings, condition.spectrum, logger);
                break;
            }
            case RESTYPE_END_OF_CONDITIONS_8:
            case RESTYPE_END_OF_CONDITIONS_A:
                atEnd = true;
                break;
            default:
                break;
        }
    }
}

void CacheGenerator::copySegmentVariables(const qsf2sql::VariableSettings& settings, const logging::Logger& logger) {
    for (const qsf2sql::VariableSetting& setting : settings) {
        // There is a table for them, which is kept empty.
        if (setting.keyId == qsf2sql::VariableSettings::noKey) {
            KVAN_LOG(logger, WARN) << "copySegmentVariables(): unexpected setting of " << setting.name()
                                   << " for AK = -1. Skipping.";
            continue;
        }
        const qsf2sql::VariableDescription* const info = m_variableDescriptions->find(setting.name());
        if (info == nullptr) {
            KVAN_LOG(logger, WARN) << "copySegmentVariables(): no variable info for " << setting.name()
                                   << ". Skipping.";
            continue;
        }
        m_segmentVariableInsert.bind(1, *m_currentSegment);
        m_segmentVariableInsert.bind(2, setting.keyId);
        m_segmentVariableInsert.bind(3, info->schemaId);
        insertAnyIntoSQLite(m_segmentVariableInsert, 4, info->type, setting.value);
        if (!insertRow(m_segmentVariableInsert) && !std::exchange(m_segmentDuplicateReported, true)) {
            KVAN_LOG(logger, WARN) << "QSF contains multiply defined per-segment variable (schema variable ID = "
                                   << info->schemaId << "). Ignoring this and all other duplicates.";
        }
    }
    m_segmentVariableInsert.bindNull(4);
}

void CacheGenerator::copySpectrumVariables(const qsf2sql::VariableSettings& settings, std::uint32_t spectrumNumber,
                                           const logging::Logger& logger) {
    m_spectrumVariableInsert.bind(1, spectrumNumber);
    for (const qsf2sql::VariableSetting& setting : settings) {
        if (setting.keyId != qsf2sql::VariableSettings::noKey) {
            KVAN_LOG(logger, WARN) << "copySpectrumVariables(): unexpected setting of " << setting.name()
                                   << " for AK != -1. Skipping.";
            continue;
        }
        const qsf2sql::VariableDescription* const info = m_variableDescriptions->find(setting.name());
        if (info == nullptr) {
            KVAN_LOG(logger, WARN) << "copySpectrumVariables(): no variable info for " << setting.name()
                                   << ". Skipping.";
            continue;
        }
        m_spectrumVariableInsert.bind(2, info->schemaId);
        insertAnyIntoSQLite(m_spectrumVariableInsert, 3, info->type, setting.value);
        if (!insertRow(m_spectrumVariableInsert) && !std::exchange(m_spectrumDuplicateReported, true)) {
            KVAN_LOG(logger, WARN) << "QSF contains multiply defined variable " << setting.name()
                                   << ". Ignoring this and all other duplicates.";
        }
    }
    m_spectrumVariableInsert.bindNull(3);
}

void CacheGenerator::insertAnyIntoSQLite(cppsqlite::CppSQLite3Statement& statement, int parameterIndex,
                                         qsf2sql::VariableType type, const qsf2sql::VariableValue& value) {
    using namespace qsf2sql;
    switch (type) {
        case VariableType::Integer:
            return statement.bind(parameterIndex, valueAs<std::int32_t>(value));
        case VariableType::Double:
            return statement.bind(parameterIndex, valueAs<double>(value));
        case VariableType::String:
            return statement.bindBorrowed(parameterIndex, windows1252ToUtf8(valueAs<Text>(value).bytes, m_utf8));
        case VariableType::IntegerVector:
            return bindBlob(statement, parameterIndex, valueAs<IntegerVector>(value).bytes);
        case VariableType::DoubleVector:
            return bindBlob(statement, parameterIndex, valueAs<DoubleVector>(value).bytes);
        case VariableType::StringVector:
            return bindBlob(statement, parameterIndex, windows1252ToUtf8(valueAs<StringVector>(value).bytes, m_utf8));
        case VariableType::NotDeclared:
            break;
    }
    BOOST_THROW_EXCEPTION(std::runtime_error("Not implemented yet."));
}

}  // namespace kvan::io
