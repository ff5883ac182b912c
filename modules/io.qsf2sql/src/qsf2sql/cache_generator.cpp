#include "qsf2sql/cache_generator.h"

#include "qsf2sql/cache_schema.h"
#include "qsf2sql/errors.h"
#include "qsf2sql/index_pass.h"
#include "qsf2sql/qsflib/CompressionInfoBlock.h"
#include "qsf2sql/qsflib/InstrumentInfoBlock.h"
#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"
#include "sysutils/platform.h"

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

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

}  // namespace

CacheGenerator::CacheGenerator(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database,
                               bool allVariables, const std::unordered_set<std::string>& requestedVariables)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.CacheGenerator")),
      m_database(database),
      m_references(m_logger) {
    m_database.execDML(g_pageCache);
    for (const char* const statement : qsf2sql::g_createTables)
        m_database.execDML(statement);
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
    std::optional<std::uint32_t> currentSegment;

    for (bool atEnd = false; !atEnd && reader.nextBlock() != 0; reader.blockPosition += reader.blockSize) {
        switch (peekType(reader)) {
            case RESTYPE_SEGMENT_CONDITION: {
                segmentCondition.Read(reader);
                const std::uint32_t segment = segmentCondition.header.segment;
                KVAN_LOG(logger, TRACE) << "QSF: segment condition #" << segment;
                currentSegment = currentSegment.value_or(0) + 1;
                requireConsistent(segment == *currentSegment,
                                  "Expected consecutive numbering of segments starting at one.");
                break;
            }
            case RESTYPE_SPECTRUM_CONDITION: {
                spectrumCondition.Read(reader);
                const SpectrumConditionRecord& condition = spectrumCondition.header;
                KVAN_LOG(logger, TRACE) << "QSF: Spectrum condition #" << condition.spectrum << " for segment #"
                                        << condition.segment;
                requireConsistent(currentSegment == condition.segment,
                                  "File format problem: expected different segment.");
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

}  // namespace kvan::io
