#pragma once

#include <logger/logger.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/ResourceRecords.h>

#include <cstdint>
#include <optional>

namespace KVAN::io::QSF {

/// A block as a walk has found it.
struct WalkedBlock {
    /// What a container has of its size beyond what it holds: its head, and 12 bytes of no known meaning.
    static constexpr std::uint64_t g_containerOverhead = sizeof(ContainerHeader) + 12;

    std::uint64_t start;  ///< of its first byte in the file
    std::uint64_t size;   ///< in bytes, as its head claims
    std::uint16_t type;   ///< _RESOURCE_TYPE

    bool isContainer() const { return type == RESTYPE_CONTAINER; }
    std::uint64_t end() const { return start + size; }
    /// Where its record begins: of a container the contained entry, of any other block its head.
    std::uint64_t contentStart() const { return isContainer() ? start + sizeof(ContainerHeader) : start; }
    /// The size that counts for the walk: 0 ends it.
    std::uint64_t contentSize() const { return isContainer() ? size - g_containerOverhead : size; }
};

/// Walks a native file from block to block:
///
///     BlockWalk walk(reader);
///     while (const auto block = walk.next())
///         handle(*block, reader);
///
/// Whoever handles a block may leave the reader anywhere, and need not read it: the walk seeks for itself. Borrows the
/// reader.
class BlockWalk {
public:
    explicit BlockWalk(kvan::io::QSFBlockedReader& reader);

    /// The next block, with the reader at its `contentStart`. Nothing at the end marker, at a block of size 0 and at a
    /// container that holds nothing. A file that ends without the marker, and a container smaller than its overhead,
    /// are read errors.
    std::optional<WalkedBlock> next();

    /// Type of the record at `contentStart` of the block that was found last; leaves the reader there.
    std::uint16_t contentType(const WalkedBlock& block);

    kvan::io::QSFBlockedReader& reader() const { return m_reader; }

private:
    kvan::logging::Logger m_logger;
    kvan::io::QSFBlockedReader& m_reader;
    std::uint64_t m_next = 0;  // where the next block begins
};

}  // namespace KVAN::io::QSF
