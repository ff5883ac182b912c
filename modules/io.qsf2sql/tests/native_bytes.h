#pragma once

#include <qsf2sql/errors.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <test-support/support.h>

namespace native_bytes {

/// Bytes of a native file, written down field by field.
class Bytes : public std::string {
public:
    using std::string::string;

    template <class T>
    Bytes& add(T value) {
        append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    template <class T>
    Bytes& set(std::size_t offset, T value) {
        std::memcpy(data() + offset, &value, sizeof value);
        return *this;
    }
    Bytes& add(const Bytes& bytes) { return append(bytes), *this; }
    Bytes& add(const char* text) { return append(text), *this; }
    Bytes& fill(std::size_t count, char byte) { return append(count, byte), *this; }
    /// Makes the first field the size of all bytes so far.
    Bytes& sized() { return set(0, static_cast<std::uint32_t>(size())); }
    Bytes cutAt(std::size_t count) const { return Bytes(data(), count); }
};

/// The fixed part of a block with its head filled in and zeros after it.
inline Bytes block(std::uint16_t type, std::size_t fixedSize) {
    return Bytes(fixedSize, '\0').set(4, type).set(6, std::uint16_t{0xBFA0}).sized();
}

inline Bytes endOfFile() {
    return block(0x5003, 8);
}

class MemoryFile final : public kvan::sys::PositionedFile {
public:
    explicit MemoryFile(std::string bytes) : m_bytes(std::move(bytes)) {}

    std::int64_t readAt(void* destination, std::int64_t count, std::uint64_t offset) override {
        const std::uint64_t left = offset < m_bytes.size() ? m_bytes.size() - offset : 0;
        const std::uint64_t given = std::min(left, static_cast<std::uint64_t>(count));
        if (given != 0)
            std::memcpy(destination, m_bytes.data() + offset, given);
        return static_cast<std::int64_t>(given);
    }
    std::uint64_t size() const override { return m_bytes.size(); }

private:
    std::string m_bytes;
};

using Access = kvan::io::QSFBlockedReader::Access;

inline std::unique_ptr<kvan::io::QSFBlockedReader> readerOf(std::string bytes, Access access = Access::Scan) {
    return std::make_unique<kvan::io::QSFBlockedReader>(std::make_unique<MemoryFile>(std::move(bytes)), access);
}

/// Reads one block that begins at `start` of `bytes`.
template <class Block>
Block readBlock(const std::string& bytes, std::uint64_t start = 0) {
    const auto reader = readerOf(bytes);
    reader->seekTo(start);
    Block block;
    block.Read(*reader);
    return block;
}

/// What the format error says that `work` ends with; empty if it ends well.
template <class Work>
std::string failureOf(Work work) {
    return kvan::test::failureOf<kvan::io::Qsf2SqlFileFormatError>(work);
}

inline const std::string g_readError = "Error reading QSF files.";

}  // namespace native_bytes
