#include "qsf2sql/passes/main_file_pass.h"

#include "qsf2sql/passes/analysis_properties.h"
#include "qsf2sql/qsflib/CompressionInfoBlock.h"
#include "qsf2sql/qsflib/InstrumentInfoBlock.h"

#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>
#include <optional>
#include <utility>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

[[noreturn]] void failFormat(const char* fault) {
    BOOST_THROW_EXCEPTION(Qsf2SqlFileFormatError(fault));
}

// In comes the main file from its first block on. The two important blocks may stand in either order. Tolerated: blocks
// of any other type before and among them; an INSTRUMENT_INFO after the later of them, which is not seen. The walk
// stops there, and the last pass goes on with the same walk, so that no block of the file is met twice.
//
// Properties are written as their block is read: of two analysis headers before the compression info the second one is
// refused by the table's primary key. A block that is damaged ends the generation, an unknown one is passed over.
class MainFilePass {
public:
    MainFilePass(const WantedVariables& wanted, cppsqlite::CppSQLite3DB& database, const logging::Logger& logger)
        : m_logger(logger), m_wanted(wanted), m_properties(database), m_references(logger) {}

    MainFileHead run(BlockWalk& walk) {
        m_properties.insert("SchemaType", "Qsf2Sql");
        // Stops with the second of them: the last pass goes on with the block after it.
        while (!isComplete()) {
            const auto block = walk.next();
            if (!block)
                break;
            readBlock(walk.contentType(*block), walk.reader());
        }
        m_properties.insert("InstrumentSerialNumber", instrumentSerialNumber(m_serialNumber));
        if (!isComplete())
            failFormat("Important blocks missing from main QSF file.");
        KVAN_LOG(m_logger, TRACE) << "QSF file scanned successfully.";
        return {*std::move(m_compressor), m_facts, std::move(m_references), *std::move(m_variables)};
    }

private:
    bool isComplete() const { return m_compressor && m_variables; }

    void readBlock(std::uint16_t type, QSFBlockedReader& reader) {
        switch (type) {
            case COMPRESSION_INFO:
                return readCompressionInfo(reader);
            case ANALYSIS_HEADER:
                return readAnalysisHeader(reader);
            case INSTRUMENT_INFO:
                return readInstrumentInfo(reader);
            default:
                return;
        }
    }

    void readCompressionInfo(QSFBlockedReader& reader) {
        KVAN_LOG(m_logger, TRACE) << "COMPRESSION_INFO found.";
        CompressionInfoBlock block;
        block.Read(reader);
        if (block.compressors.size() > 1)
            failFormat("Don't know how to handle more than one COMPRESSION INFO ENTRY.");
        if (!m_compressor)
            m_compressor.emplace();  // a second block without an entry leaves the first one's
        if (!block.compressors.empty()) {
            m_compressor = block.compressors.front();
            KVAN_LOG(m_logger, TRACE) << "Using compressor " << *m_compressor;
        }
    }

    void readAnalysisHeader(QSFBlockedReader& reader) {
        KVAN_LOG(m_logger, TRACE) << "ANALYSIS_HEADER found.";
        AnalysisHeaderBlock block;
        block.Read(reader);
        m_facts.timebase = block.header.timebase * 1.0e-6;  // stored in microseconds
        KVAN_LOG(m_logger, TRACE) << "Timebase is " << m_facts.timebase << "s";
        KVAN_LOG(m_logger, TRACE) << "Analysis header pool contains " << block.calibrations.size()
                                  << " reference transformators.";
        // Before the properties: a reference that cannot be read is the failure that is reported.
        m_references.populate(block.calibrations);
        if (!block.description)
            failFormat("Analysis description missing from main QSF file.");
        m_serialNumber.fallback = block.description->serialFallback;
        m_properties.insertAll(block.header, *block.description);
        m_facts.instrumentFamily = block.description->instrumentFamily;
        // Tolerated: a file without declarations declares no variables.
        m_variables.emplace(block.variables ? *block.variables : VarTabDescBlock(), g_builtInVariables, m_wanted.all,
                            m_wanted.requested);
    }

    void readInstrumentInfo(QSFBlockedReader& reader) {
        KVAN_LOG(m_logger, TRACE) << "INSTRUMENT_INFO found.";
        InstrumentInfoBlock block;
        block.Read(reader);
        m_serialNumber.textA = block.textA;
        m_serialNumber.textB = block.textB;
    }

    const logging::Logger& m_logger;
    const WantedVariables& m_wanted;
    AnalysisProperties m_properties;
    SerialNumberParts m_serialNumber;
    AnalysisFacts m_facts;
    ReferenceTransformatorMap m_references;
    std::optional<std::string> m_compressor;          // from COMPRESSION_INFO on
    std::optional<VariableDescriptions> m_variables;  // from ANALYSIS_HEADER on
};

}  // namespace

MainFileHead readMainFileHead(BlockWalk& walk, const WantedVariables& wanted, cppsqlite::CppSQLite3DB& database,
                              const logging::Logger& logger) {
    return MainFilePass(wanted, database, logger).run(walk);
}

}  // namespace kvan::io::qsf2sql::passes
