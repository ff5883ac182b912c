#pragma once

#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/ResourceRecords.h>

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>

namespace KVAN::io::QSF {

/// What the readers of all blocks share. Each throws `Qsf2SqlFileFormatError`.
class CQSFUtil {
public:
    /// Throws a text with both types, both versions and `offset` unless type and version are the expected ones.
    static void BlockVerify(const RESOURCE_HEADER& header, _RESOURCE_TYPE expectedType, const std::uint64_t& offset,
                            std::uint16_t expectedVersion);

    /// Reads and verifies the fixed head of a block at the reader's position.
    template <class Header>
    static Header ReadHeader(kvan::io::QSFBlockedReader& reader, _RESOURCE_TYPE type) {
        const auto header = kvan::io::readRecord<Header>(reader);
        BlockVerify(header.resource, type, reader.tell(), g_version);
        return header;
    }

    /// The `length` bytes at `position` of the file without trailing zero bytes; zero bytes inside stay.
    static std::string ReadText(kvan::io::QSFBlockedReader& reader, std::uint64_t position, std::uint64_t length);

    /// All texts of a record with a `textOffset` array, which count from `start` in the file. No length is stored: a
    /// text ends where the next one that is there starts, or at the record's end after `size` bytes; an offset of 0
    /// means an empty text. A text that would end beyond its record is a read error.
    template <class Record>
    static auto ReadTexts(kvan::io::QSFBlockedReader& reader, const Record& record, std::uint64_t start,
                          std::uint64_t size);
};

template <class Record>
auto CQSFUtil::ReadTexts(kvan::io::QSFBlockedReader& reader, const Record& record, std::uint64_t start,
                         std::uint64_t size) {
    constexpr std::size_t count = std::extent_v<decltype(record.textOffset)>;
    std::array<std::string, count> texts;
    std::uint64_t end = size;
    for (std::size_t index = count; index-- > 0;) {
        const std::uint64_t offset = record.textOffset[index];
        if (offset == 0)
            continue;
        // Tolerated: offsets that do not ascend. A text that starts where the next one does, or after it, is empty.
        if (end > offset) {
            if (end > size)
                reader.readError();
            texts[index] = ReadText(reader, start + offset, end - offset);
        }
        end = offset;
    }
    return texts;
}

}  // namespace KVAN::io::QSF
