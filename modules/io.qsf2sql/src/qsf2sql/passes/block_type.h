#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

namespace kvan::io::qsf2sql::passes {

/// Type of the block at the reader's position, which stays.
inline std::uint16_t peekType(QSFBlockedReader& reader) {
    const auto header = readRecord<KVAN::io::QSF::RESOURCE_HEADER>(reader);
    reader.skip(-static_cast<std::int64_t>(sizeof header));
    return header.type;
}

}  // namespace kvan::io::qsf2sql::passes
