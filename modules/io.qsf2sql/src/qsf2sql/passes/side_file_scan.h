#pragma once

#include "qsf2sql/qsflib/BlockWalk.h"

#include <logger/logger.h>

namespace kvan::io::qsf2sql::passes {

/// Where the head of a side file ends and its entries begin.
struct SideFileHead {
    std::uint16_t passedOver;      ///< block type that is expected and skipped
    std::uint16_t entriesFollow;   ///< block type after which the entries begin
    const char* traceOfBlockType;  ///< text before the type in a TRACE line for each head block; null: no line
};

inline constexpr SideFileHead g_indexFileHead{KVAN::io::QSF::RESTYPE_INDEX_HEAD,
                                              KVAN::io::QSF::RESTYPE_INDEX_ENTRIES_FOLLOW, "IDX resource type = 0x"};
inline constexpr SideFileHead g_extraFileHead{KVAN::io::QSF::RESTYPE_EXTRA_HEAD,
                                              KVAN::io::QSF::RESTYPE_EXTRA_ENTRIES_FOLLOW, nullptr};

/// Walks a side file from entry to entry, the road that the passes over both side files have in common:
///
///     SideFileScan scan(reader, g_indexFileHead, logger);
///     while (const auto entry = scan.nextEntry())
///         handle(readRecord<FILE_CONTAINER_INDEX_ENTRY>(reader), entry->contentSize());
///
/// Blocks of an unexpected type in the head are logged at WARN and passed over. A head without the block that announces
/// the entries runs to the end of the file. Borrows reader and logger.
class SideFileScan {
public:
    SideFileScan(QSFBlockedReader& reader, const SideFileHead& head, const logging::Logger& logger);

    /// The next entry, with the reader at its `contentStart`; nothing at the end. Throws like the reader.
    std::optional<KVAN::io::QSF::WalkedBlock> nextEntry();

private:
    void passHead(const KVAN::io::QSF::WalkedBlock& block);

    KVAN::io::QSF::BlockWalk m_walk;
    const SideFileHead& m_head;
    const logging::Logger& m_logger;
    bool m_inEntries = false;
};

}  // namespace kvan::io::qsf2sql::passes
