#include "qsf2sql/qsflib/ResourcePool.h"

#include <qsf2sql/errors.h>

#include <algorithm>
#include <boost/throw_exception.hpp>

namespace KVAN::io::QSF {

// One pass over the heads notes where the blocks of the pool are; what is in them is read when they are taken. The walk
// is bounded by the block around the pool, never by what an entry says: sizes only move it on.
//
// Tolerated: an entry that reaches beyond the pool, which is noted and is the last; less than a head at the end; an
// entry smaller than its own head, which is dropped with all that follows. An entry of size 0 would stand still, so it
// fails.
void ResourcePool::Read(kvan::io::QSFBlockedReader& reader, std::uint64_t blockStart, std::uint32_t blockSize,
                        std::uint32_t poolOffset) {
    m_blocks.clear();
    if (poolOffset == 0)
        return;
    m_end = blockStart + blockSize;
    std::uint64_t position = blockStart + poolOffset;
    while (position + sizeof(RESOURCE_HEADER) <= m_end) {
        reader.seekTo(position);
        const auto header = kvan::io::readRecord<RESOURCE_HEADER>(reader);
        if (header.size == 0)
            BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError("QSF: pool entry of size 0."));
        if (header.size < sizeof(RESOURCE_HEADER))
            return;
        m_blocks.emplace_back(header.type, position);
        position += header.size;
    }
}

std::optional<std::uint64_t> ResourcePool::RemoveFirst(_RESOURCE_TYPE type) {
    const auto found =
        std::find_if(m_blocks.begin(), m_blocks.end(), [type](const auto& block) { return block.first == type; });
    if (found == m_blocks.end())
        return std::nullopt;
    const std::uint64_t position = found->second;
    m_blocks.erase(found);
    return position;
}

// Blocks keep the order of the file, which is that of the rows in the cache.
std::vector<std::uint64_t> ResourcePool::RemoveAll(_RESOURCE_TYPE type) {
    std::vector<std::uint64_t> positions;
    std::erase_if(m_blocks, [&](const auto& block) {
        if (block.first == type)
            positions.push_back(block.second);
        return block.first == type;
    });
    return positions;
}

}  // namespace KVAN::io::QSF
