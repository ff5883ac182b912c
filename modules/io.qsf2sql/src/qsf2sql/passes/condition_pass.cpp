#include "qsf2sql/passes/condition_pass.h"

#include "qsf2sql/variables/variable_rows.h"
#include "qsf2sql/variables/variable_settings.h"

#include <boost/throw_exception.hpp>
#include <optional>
#include <stdexcept>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

void requireConsistent(bool condition, const char* fault) {
    if (!condition)
        BOOST_THROW_EXCEPTION(std::runtime_error(fault));
}

// In comes the rest of the main file: conditions, and spectrum data among them, of which only the heads are read. Each
// condition gives its settings, each setting one row.
//
// Segments are numbered 1, 2, 3 ... in file order, and a spectrum belongs to the segment that was met last; a file that
// says otherwise ends the generation. What is wrong with a single variable is logged and passed over.
//
// One block object serves all conditions of a kind: tables and texts keep their memory from block to block, and the
// settings look into it.
class ConditionPass {
public:
    ConditionPass(const VariableDescriptions& descriptions, const AcquisitionKeyMap& keys,
                  cppsqlite::CppSQLite3DB& database)
        : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql.vartab")),
          m_settings(descriptions, keys),
          m_segmentRows(g_segmentVariables, descriptions, database, m_logger),
          m_spectrumRows(g_spectrumVariables, descriptions, database, m_logger) {}

    void run(BlockWalk& walk) {
        while (const auto block = walk.next()) {
            switch (walk.contentType(*block)) {
                case RESTYPE_SEGMENT_CONDITION:
                    readSegment(walk.reader());
                    break;
                case RESTYPE_SPECTRUM_CONDITION:
                    readSpectrum(walk.reader());
                    break;
                // Tolerated: anything after these two, a missing end marker included.
                case RESTYPE_END_OF_CONDITIONS_8:
                case RESTYPE_END_OF_CONDITIONS_A:
                    return;
                default:  // tolerated: blocks of any other type among the conditions
                    break;
            }
        }
    }

private:
    void readSegment(QSFBlockedReader& reader) {
        m_segmentCondition.Read(reader);
        const std::uint32_t segment = m_segmentCondition.header.segment;
        KVAN_LOG(m_logger, TRACE) << "QSF: segment condition #" << segment;
        m_segment = m_segment.value_or(0) + 1;
        requireConsistent(segment == *m_segment, "Expected consecutive numbering of segments starting at one.");
        m_settings.read(m_segmentCondition);
        m_settings.dump();
        m_segmentRows.insert(segment, m_settings);
    }

    void readSpectrum(QSFBlockedReader& reader) {
        m_spectrumCondition.Read(reader);
        const SpectrumConditionRecord& condition = m_spectrumCondition.header;
        KVAN_LOG(m_logger, TRACE) << "QSF: Spectrum condition #" << condition.spectrum << " for segment #"
                                  << condition.segment;
        requireConsistent(m_segment == condition.segment, "File format problem: expected different segment.");
        m_settings.read(m_spectrumCondition);
        m_settings.dump();
        m_spectrumRows.insert(condition.spectrum, m_settings);
    }

    logging::Logger m_logger;
    std::optional<std::uint32_t> m_segment;  // number of the one met last
    SegmentConditionBlock m_segmentCondition;
    SpectrumConditionBlock m_spectrumCondition;
    VariableSettings m_settings;
    VariableRows m_segmentRows;
    VariableRows m_spectrumRows;
};

}  // namespace

void readConditions(BlockWalk& walk, const VariableDescriptions& descriptions, const AcquisitionKeyMap& keys,
                    cppsqlite::CppSQLite3DB& database, const logging::Logger& logger) {
    KVAN_LOG(logger, TRACE) << "Now reading variable tables.";
    ConditionPass(descriptions, keys, database).run(walk);
}

}  // namespace kvan::io::qsf2sql::passes
