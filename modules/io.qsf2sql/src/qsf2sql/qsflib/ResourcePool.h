#pragma once

#include "qsf2sql/qsf_blocked_reader.h"

#include <memory>
#include <utility>
#include <vector>

namespace KVAN::io::QSF {

/// The blocks inside a block by type, each to be taken once. Types that nobody takes are dropped.
class ResourcePool {
public:
    /// Walks the pool of the block that starts at `blockStart` and has `blockSize` bytes by the heads of its entries.
    /// A `poolOffset` of 0 means an empty pool. What was in here is forgotten, its memory is used again.
    ///
    /// The walk ends at the block's end, or ahead of it at an entry that is smaller than its head or leaves no room for
    /// another head. Throws `Qsf2SqlFileFormatError` for an entry of size 0, behind which there is no next one.
    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t blockStart, std::uint32_t blockSize,
              std::uint32_t poolOffset);

    /// Removes the first block of the type and reads it; null if there is none.
    template <class Block>
    std::shared_ptr<Block> Take(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        const std::vector<std::uint64_t> positions = Remove(type, 1);
        return positions.empty() ? nullptr : ReadBlock<Block>(reader, positions.front());
    }

    /// Removes all blocks of the type and reads them in the order of the file.
    template <class Block>
    std::vector<std::shared_ptr<Block>> TakeAll(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        std::vector<std::shared_ptr<Block>> blocks;
        for (const std::uint64_t position : Remove(type, SIZE_MAX))
            blocks.push_back(ReadBlock<Block>(reader, position));
        return blocks;
    }

private:
    template <class Block>
    static std::shared_ptr<Block> ReadBlock(kvan::io::QSFBlockedReader& reader, std::uint64_t position) {
        auto block = std::make_shared<Block>();
        reader.seekTo(position);
        block->Read(reader);
        return block;
    }

    /// Removes up to `count` blocks of the type and gives where they start in the file.
    std::vector<std::uint64_t> Remove(_RESOURCE_TYPE type, std::size_t count);

    std::vector<std::pair<std::uint16_t, std::uint64_t>> m_blocks;  // type and position, in the order of the file
};

}  // namespace KVAN::io::QSF
