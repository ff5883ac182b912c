#include "qsf2sql/passes/index_pass.h"

#include "qsf2sql/passes/side_file_scan.h"

#include <qsf2sql/qsf_blocked_reader.h>

#include <ios>

namespace kvan::io::qsf2sql {

using namespace KVAN::io::QSF;

namespace {

/// From parameter 3 of the insert on.
constexpr ArrayKind g_lineKinds[] = {ArrayKind::LineIndex,    ArrayKind::LineIntensity, ArrayKind::LineIndexWidth,
                                     ArrayKind::LinePeakArea, ArrayKind::LineSnr,       ArrayKind::LineMz};
constexpr ArrayKind g_profileKinds[] = {ArrayKind::ProfileIntensity, ArrayKind::ProfileMz};

}  // namespace

IndexPass::IndexPass(cppsqlite::CppSQLite3DB& database, const logging::Logger& logger)
    : m_logger(logger),
      m_insert(database.compileStatement(
          "INSERT INTO Spectra (Id, Segment, LineIndexId, LineIntensityId, LineIndexWidthId, LinePeakAreaId, "
          "LineSnrId, LineMzId, ProfileIntensityId, ProfileMzId) VALUES (?,?,?,?,?,?,?,?,?,?)")) {}

NumberSet IndexPass::run(const boost::filesystem::path& indexFile) {
    QSFBlockedReader reader(indexFile, QSFBlockedReader::Access::Scan);
    KVAN_LOG(m_logger, TRACE) << "IDX file opened successfully.";
    SideFileScan scan(reader, g_indexFileHead, m_logger);
    while (const std::uint64_t containedSize = scan.nextEntry()) {
        const auto entry = readRecord<FILE_CONTAINER_INDEX_ENTRY>(reader);
        KVAN_LOG(m_logger, TRACE) << "IDX: entry type = 0x" << std::hex << entry.type;
        if (containedSize != sizeof entry) {
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

void IndexPass::handle(const FILE_CONTAINER_INDEX_ENTRY& entry) {
    switch (entry.type) {
        case RESTYPE_SEGMENT_CONDITION:
            KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_SEGMENT_CONDITION found.";
            m_segment = m_segment.value_or(0) + 1;
            break;
        case RESTYPE_SPECTRUM_CONDITION:
            KVAN_LOG(m_logger, TRACE) << "IDX: RESTYPE_SPECTRUM_CONDITION #" << entry.EntryIndexNo;
            flush();
            m_pending = Spectrum{entry.EntryIndexNo, m_segment, {}, {}};
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

void IndexPass::flush() {
    if (!m_pending)
        return;
    int parameter = 0;
    const auto bindIds = [&](const std::optional<ArrayId>& id, const auto& kinds) {
        for (const ArrayKind kind : kinds) {
            if (id)
                m_insert.bind(++parameter, id->withKind(kind).value());
            else
                m_insert.bindNull(++parameter);
        }
    };
    m_insert.bind(++parameter, std::int64_t{m_pending->number} + 1);
    if (m_pending->segment)
        m_insert.bind(++parameter, *m_pending->segment);
    else
        m_insert.bindNull(++parameter);
    bindIds(m_pending->lines, g_lineKinds);
    bindIds(m_pending->profile, g_profileKinds);
    m_insert.execDML();
    if (!m_pending->lines && !m_pending->profile)
        m_withoutData.add(m_pending->number);
    m_pending.reset();
}

}  // namespace kvan::io::qsf2sql
