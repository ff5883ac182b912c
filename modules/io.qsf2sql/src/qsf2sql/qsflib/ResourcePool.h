#pragma once

#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/ResourceRecords.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace KVAN::io::QSF {

/// The blocks inside a block by type, each to be taken once. Types that nobody takes are dropped.
class ResourcePool {
public:
    /// Walks the pool of the block that starts at `blockStart` and has `blockSize` bytes by the heads of its entries.
    /// A `poolOffset` of 0 means an empty pool. What was in here is forgotten, its memory is used again.
    ///
    /// The walk ends at the block's end, or before it at an entry that is smaller than its head or leaves no room for
    /// another head. Throws `Qsf2SqlFileFormatError` for an entry of size 0, after which there is no next one.
    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t blockStart, std::uint32_t blockSize,
              std::uint32_t poolOffset);

    /// Removes the first block of the type and reads it; null if there is none.
    template <class Block>
    std::shared_ptr<Block> Take(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        const auto position = RemoveFirst(type);
        return position ? ReadBlock<Block>(reader, *position) : nullptr;
    }

    /// Removes all blocks of the type and reads them in the order of the file.
    template <class Block>
    std::vector<std::shared_ptr<Block>> TakeAll(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        std::vector<std::shared_ptr<Block>> blocks;
        for (const std::uint64_t position : RemoveAll(type))
            blocks.push_back(ReadBlock<Block>(reader, position));
        return blocks;
    }

    /// Removes the first block of the type and checks that it could be read.
    template <class Block>
    void PassOver(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        if (const auto position = RemoveFirst(type)) {
            reader.seekTo(*position);
            Block::PassOver(reader);
        }
    }

    /// Removes the first table of this kind and reads it; `table` is empty if there is none.
    template <class Table>
    void TakeTable(kvan::io::QSFBlockedReader& reader, Table& table) {
        table.clear();
        if (const auto position = RemoveFirst(Table::type))
            ReadTable(reader, *position, table);
    }

    /// Removes all tables of this kind and reads them in the order of the file.
    template <class Table>
    void TakeAllTables(kvan::io::QSFBlockedReader& reader, std::vector<Table>& tables) {
        tables.clear();
        for (const std::uint64_t position : RemoveAll(Table::type))
            ReadTable(reader, position, tables.emplace_back());
    }

private:
    template <class Block>
    static std::shared_ptr<Block> ReadBlock(kvan::io::QSFBlockedReader& reader, std::uint64_t position) {
        auto block = std::make_shared<Block>();
        reader.seekTo(position);
        block->Read(reader);
        return block;
    }

    template <class Table>
    void ReadTable(kvan::io::QSFBlockedReader& reader, std::uint64_t position, Table& table) {
        reader.seekTo(position);
        table.Read(reader, m_end);
    }

    /// Removes blocks of the type and gives where they start in the file.
    std::optional<std::uint64_t> RemoveFirst(_RESOURCE_TYPE type);
    std::vector<std::uint64_t> RemoveAll(_RESOURCE_TYPE type);

    std::vector<std::pair<std::uint16_t, std::uint64_t>> m_blocks;  // type and position, in the order of the file
    std::uint64_t m_end = 0;                                        // of the pool in the file
};

}  // namespace KVAN::io::QSF
