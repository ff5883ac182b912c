#include "qsf2sql/passes/index_pass.h"

#include "qsf2sql/passes/side_file_scan.h"

#include <qsf2sql/array_id.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/ResourceRecords.h>

#include <cstdint>
#include <ios>
#include <optional>
#include <string>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

namespace {

/// What the entries of one spectrum tell.
struct IndexedSpectrum {
    std::uint32_t number;  // from 0
    std::optional<std::uint32_t> segment;
    std::optional<ArrayId> lines = {};
    std::optional<ArrayId> profile = {};
};

/// A column of array Ids: all arrays of one block share its offset and differ in kind. Every kind gets its Id, whether
/// or not the block holds it, which only a look into the main file would tell.
struct ArrayColumn {
    const char* name;
    ArrayKind kind;
    std::optional<ArrayId> IndexedSpectrum::*block;
};

constexpr ArrayColumn g_arrayColumns[] = {
    {"LineIndexId", ArrayKind::LineIndex, &IndexedSpectrum::lines},
    {"LineIntensityId", ArrayKind::LineIntensity, &IndexedSpectrum::lines},
    {"LineIndexWidthId", ArrayKind::LineIndexWidth, &IndexedSpectrum::lines},
    {"LinePeakAreaId", ArrayKind::LinePeakArea, &IndexedSpectrum::lines},
    {"LineSnrId", ArrayKind::LineSnr, &IndexedSpectrum::lines},
    {"LineMzId", ArrayKind::LineMz, &IndexedSpectrum::lines},
    {"ProfileIntensityId", ArrayKind::ProfileIntensity, &IndexedSpectrum::profile},
    {"ProfileMzId", ArrayKind::ProfileMz, &IndexedSpectrum::profile},
};

std::string spectrumInsert() {
    std::string columns = "INSERT INTO Spectra (Id, Segment";
    std::string parameters = ") VALUES (?,?";
    for (const ArrayColumn& column : g_arrayColumns) {
        columns.append(", ").append(column.name);
        parameters += ",?";
    }
    return columns + parameters + ")";
}

// In come entries of 24 bytes in file order: a spectrum condition opens a spectrum, the spectrum blocks after it belong
// to it, and a segment condition counts the segments for the spectra after it. Blocks are not visited: their offsets
// are all that the array Ids need.
//
// A row is inserted when the next spectrum begins, so that each is written once and whole. Tolerated: two blocks of a
// kind, of which the later one counts; an entry of an unknown type, which is logged and passed over; block entries
// before the first spectrum, which belong to none, yet their offsets are checked as all are; spectra in any order and
// with gaps.
class IndexPass {
public:
    IndexPass(cppsqlite::CppSQLite3DB& database, const logging::Logger& logger)
        : m_logger(logger), m_insert(database.compileStatement(spectrumInsert())) {}

    NumberSet run(QSFBlockedReader& reader) {
        SideFileScan scan(reader, g_indexFileHead, m_logger);
        while (const auto container = scan.nextEntry()) {
            const auto entry = readRecord<FILE_CONTAINER_INDEX_ENTRY>(reader);
            KVAN_LOG(m_logger, TRACE) << "IDX: entry type = 0x" << std::hex << entry.type;
            // Tolerated: a container that is larger than its entry.
            if (container->contentSize() != sizeof entry) {
                KVAN_LOG(m_logger, WARN) << "IDX: contained data size non-zero, expected zero.";
            }
            handle(entry);
        }
        flush();
        KVAN_LOG(m_logger, TRACE) << "Index file scanned successfully: " << m_lineCount << " line spectra, "
                                  << m_profileCount << " profile spectra.";
        m_withoutData.seal();
        return std::move(m_withoutData);
    }

private:
    void handle(const FILE_CONTAINER_INDEX_ENTRY& entry) {
        switch (entry.type) {
            case RESTYPE_SEGMENT_CONDITION:
                KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_SEGMENT_CONDITION found.";
                m_segment = m_segment.value_or(0) + 1;
                break;
            case RESTYPE_SPECTRUM_CONDITION:
                KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_SPECTRUM_CONDITION #" << entry.EntryIndexNo;
                flush();
                m_pending = IndexedSpectrum{entry.EntryIndexNo, m_segment};
                break;
            case RESTYPE_SCAN_SPECTRUM: {
                KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_SCAN_SPECTRUM";
                ++m_profileCount;
                const ArrayId id(entry.offset, ArrayKind::ProfileMz);
                if (m_pending)
                    m_pending->profile = id;
                break;
            }
            case RESTYPE_LINE_SPECTRUM: {
                KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_LINE_SPECTRUM";
                ++m_lineCount;
                const ArrayId id(entry.offset, ArrayKind::LineMz);
                if (m_pending)
                    m_pending->lines = id;
                break;
            }
            case INSTRUMENT_INFO:
            case RESTYPE_CONDITION_2003:
            case ANALYSIS_HEADER:
            case RESTYPE_4004:
                break;
            default:
                KVAN_LOG(m_logger, WARN) << "Skipping unexpected data in FILE_CONTAINER_INDEX_ENTRY with: Type = 0x"
                                         << std::hex << entry.type << ", EntryIndexNo = 0x" << entry.EntryIndexNo;
        }
    }

    /// Inserts the spectrum whose entries end here.
    void flush() {
        if (!m_pending)
            return;
        const IndexedSpectrum& spectrum = *m_pending;
        int parameter = 0;
        m_insert.bind(++parameter, std::int64_t{spectrum.number} + 1);
        bindOrNull(++parameter, spectrum.segment);
        for (const ArrayColumn& column : g_arrayColumns) {
            const std::optional<ArrayId>& block = spectrum.*column.block;
            bindOrNull(++parameter, block ? std::optional(block->withKind(column.kind).value()) : std::nullopt);
        }
        m_insert.execDML();
        if (!spectrum.lines && !spectrum.profile)
            m_withoutData.add(spectrum.number);
        m_pending.reset();
    }

    template <class Integer>
    void bindOrNull(int parameter, const std::optional<Integer>& value) {
        if (value)
            m_insert.bind(parameter, *value);
        else
            m_insert.bindNull(parameter);
    }

    const logging::Logger& m_logger;
    cppsqlite::CppSQLite3Statement m_insert;
    std::optional<std::uint32_t> m_segment;    // from 1, of the segment condition met last
    std::optional<IndexedSpectrum> m_pending;  // whose entries are being read
    NumberSet m_withoutData;
    std::uint64_t m_lineCount = 0;
    std::uint64_t m_profileCount = 0;
};

}  // namespace

NumberSet readIndexFile(const boost::filesystem::path& indexFile, cppsqlite::CppSQLite3DB& database,
                        const logging::Logger& logger) {
    QSFBlockedReader reader(indexFile, QSFBlockedReader::Access::Scan);
    KVAN_LOG(logger, TRACE) << "IDX file opened successfully.";
    return IndexPass(database, logger).run(reader);
}

}  // namespace kvan::io::qsf2sql::passes
