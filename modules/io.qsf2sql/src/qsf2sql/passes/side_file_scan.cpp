#include "qsf2sql/passes/side_file_scan.h"

#include <ios>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

// Both side files are a run of plain blocks, one of which announces the entries, and then containers with one entry
// each. Tolerated: unknown blocks in the head, which are logged, and a head that announces nothing, after which every
// container counts as a block of the head and the file has no entries. Block walk and its faults are the reader's.

SideFileScan::SideFileScan(QSFBlockedReader& reader, const SideFileHead& head, const logging::Logger& logger)
    : m_reader(reader), m_head(head), m_logger(logger) {}

std::uint64_t SideFileScan::nextEntry() {
    while (true) {
        // The size of the block before this one; still 0 at the first.
        m_reader.blockPosition += m_reader.blockSize;
        const std::uint64_t size = m_reader.nextBlock();
        if (size == 0 || m_inEntries)
            return size;
        passHead();
    }
}

void SideFileScan::passHead() {
    const auto header = readRecord<RESOURCE_HEADER>(m_reader);
    if (m_head.traceOfBlockType != nullptr) {
        KVAN_LOG(m_logger, TRACE) << m_head.traceOfBlockType << std::hex << header.type;
    }
    if (header.type == m_head.entriesFollow) {
        m_inEntries = true;
    } else if (header.type != RESTYPE_SIDE_FILE_HEAD && header.type != m_head.passedOver) {
        KVAN_LOG(m_logger, WARN) << "Skipping unexpected data in RESOURCE_HEADER with: Type = 0x" << std::hex
                                 << header.type;
    }
}

}  // namespace kvan::io::qsf2sql::passes
