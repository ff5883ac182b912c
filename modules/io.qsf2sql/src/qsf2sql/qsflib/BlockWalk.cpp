#include "qsf2sql/qsflib/BlockWalk.h"

#include <ios>

namespace KVAN::io::QSF {

using kvan::io::readRecord;

BlockWalk::BlockWalk(kvan::io::QSFBlockedReader& reader)
    : m_logger(kvan::logging::Logger::getLogger("kvan.io.qsf2sql.qsfblockedreader")), m_reader(reader) {}

// Of each block only its head is read, 8 bytes, and of a container 4 more: there the size stands after them.
//
// Tolerated: an end marker of any size and version; any version of a block, which whoever reads the block verifies; a
// size that leads beyond the file, where the next step fails. A block of size 0 would stand still, so it ends the walk,
// and a container that holds nothing does, too.
std::optional<WalkedBlock> BlockWalk::next() {
    m_reader.seekTo(m_next);
    KVAN_LOG(m_logger, TRACE) << "We're now at position 0x" << std::hex << m_next;
    const auto head = readRecord<RESOURCE_HEADER>(m_reader);
    KVAN_LOG(m_logger, TRACE) << "Resource type = 0x" << std::hex << head.type;
    if (head.type == RESTYPE_END_OF_FILE)
        return std::nullopt;
    WalkedBlock block{m_next, head.size, head.type};
    if (block.isContainer()) {
        block.size = readRecord<std::uint32_t>(m_reader);
        if (block.size < WalkedBlock::g_containerOverhead)
            m_reader.readError();
    } else {
        m_reader.seekTo(block.start);
    }
    if (block.contentSize() == 0)
        return std::nullopt;
    m_next = block.end();
    return block;
}

std::uint16_t BlockWalk::contentType(const WalkedBlock& block) {
    if (!block.isContainer())
        return block.type;
    m_reader.seekTo(block.contentStart());
    const auto head = readRecord<RESOURCE_HEADER>(m_reader);
    m_reader.seekTo(block.contentStart());
    return head.type;
}

}  // namespace KVAN::io::QSF
