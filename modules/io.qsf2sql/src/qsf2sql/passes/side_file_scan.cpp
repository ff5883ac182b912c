#include "qsf2sql/passes/side_file_scan.h"

#include <ios>

namespace kvan::io::qsf2sql::passes {

using namespace KVAN::io::QSF;

// Both side files are a run of plain blocks, one of which announces the entries, and then containers with one entry
// each. Tolerated: unknown blocks in the head, which are logged, and a head that announces nothing, after which every
// container counts as a block of the head and the file has no entries. Block walk and its faults are the reader's.

SideFileScan::SideFileScan(QSFBlockedReader& reader, const SideFileHead& head, const logging::Logger& logger)
    : m_walk(reader), m_head(head), m_logger(logger) {}

std::optional<WalkedBlock> SideFileScan::nextEntry() {
    while (const auto block = m_walk.next()) {
        if (m_inEntries)
            return block;
        passHead(*block);
    }
    return std::nullopt;
}

void SideFileScan::passHead(const WalkedBlock& block) {
    const std::uint16_t type = m_walk.contentType(block);
    if (m_head.traceOfBlockType != nullptr) {
        KVAN_LOG(m_logger, TRACE) << m_head.traceOfBlockType << std::hex << type;
    }
    if (type == m_head.entriesFollow) {
        m_inEntries = true;
    } else if (type != RESTYPE_SIDE_FILE_HEAD && type != m_head.passedOver) {
        KVAN_LOG(m_logger, WARN) << "Skipping unexpected data in RESOURCE_HEADER with: Type = 0x" << std::hex << type;
    }
}

}  // namespace kvan::io::qsf2sql::passes
