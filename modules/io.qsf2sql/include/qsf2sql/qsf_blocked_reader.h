#pragma once

#include <sysutils/platform.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace kvan::io {

/// A native file, read by position. Owns the file. One position, so one thread at a time.
///
/// A short read, a failed seek or a claim that the file cannot hold throws `Qsf2SqlFileFormatError` "Error reading QSF
/// files." and leaves the reader failed: each later read and seek ends in the same words, also a seek back. Standing at
/// or beyond the end of the file is no failure, and a read of 0 bytes succeeds at any position.
///
/// Bytes are read ahead and kept for a while: a file that grows is followed, one that is rewritten in place may be seen
/// partly as it was.
class QSFBlockedReader {
public:
    /// What the reader is used for decides how far it reads ahead; the results are the same.
    enum class Access {
        Scan,    ///< from block to block through the file
        Arrays,  ///< jumps to one array and reads it whole
    };

    /// Opens beside other readers and writers of the file and reads nothing yet. Throws `Qsf2SqlCannotOpenFileError`
    /// "Can't open file: " and the path.
    QSFBlockedReader(const boost::filesystem::path& file, Access access);

    /// Reads an open file, which is not null.
    QSFBlockedReader(std::unique_ptr<sys::PositionedFile> file, Access access);

    QSFBlockedReader(const QSFBlockedReader&) = delete;
    QSFBlockedReader& operator=(const QSFBlockedReader&) = delete;

    /// Moves to `offset` from the file's first byte, which may lie beyond the end.
    void seekTo(std::uint64_t offset) {
        if (m_failed || offset > g_lastOffset) [[unlikely]]
            readError();
        m_position = offset;
    }

    /// Moves on by `count` bytes, or back if it is negative, but not before the file's first byte.
    void skip(std::int64_t count) { seekTo(m_position + static_cast<std::uint64_t>(count)); }

    std::uint64_t tell() const { return m_position; }

    /// Fails as a read of `count` elements of `size` bytes (not 0) at the position would. For what is checked and not
    /// read; `readArray` asks by itself.
    void requireAvailable(std::uint64_t count, std::uint64_t size);

    /// Fails if something has failed before.
    void requireSound() {
        if (m_failed) [[unlikely]]
            readError();
    }

    /// Leaves the reader failed and throws.
    [[noreturn]] void readError();

private:
    static constexpr std::uint64_t g_lastOffset = INT64_MAX;

    // The only ways to bytes of the file, so that nobody takes an array whose claim was not held against the file.
    template <class Record>
    friend Record readRecord(QSFBlockedReader& reader);
    template <class Container>
    friend void readArray(QSFBlockedReader& reader, std::uint64_t count, Container& to);
    template <class Element>
    friend void readArray(QSFBlockedReader& reader, std::span<Element> to);

    /// The next `count` bytes, after moving over them, if the window holds all of them; else null, and nothing has
    /// happened.
    const char* takeFromWindow(std::uint64_t count) {
        const std::uint64_t offset = m_position - m_windowStart;  // huge before the window
        if (m_failed || count == 0 || offset >= m_windowSize || count > m_windowSize - offset) [[unlikely]]
            return nullptr;
        m_position += count;
        ++m_windowReads;
        return m_window.data() + offset;
    }

    /// Reads `count` bytes at the position and moves over them.
    void readBytes(void* destination, std::uint64_t count);
    std::uint64_t nextWindowSize(std::uint64_t wanted);
    std::uint64_t bytesLeft() const { return m_position < m_fileSize ? m_fileSize - m_position : 0; }

    std::unique_ptr<sys::PositionedFile> m_file;
    std::uint64_t m_position = 0;
    std::uint64_t m_fileSize = 0;  // as last asked for
    bool m_failed = false;

    std::vector<char> m_window;  // m_windowSize bytes of the file from m_windowStart on
    std::uint64_t m_windowStart = 0;
    std::uint64_t m_windowSize = 0;
    std::uint64_t m_windowReads = 0;  // that the window has served
    std::uint64_t m_lookAhead;        // size of the next window
    const std::uint64_t m_shortestLookAhead;
    const std::uint64_t m_longestLookAhead;
};

/// Reads one record at the reader's position.
template <class Record>
Record readRecord(QSFBlockedReader& reader) {
    static_assert(std::is_trivially_copyable_v<Record>);
    Record record;
    if (const char* const bytes = reader.takeFromWindow(sizeof record))
        std::memcpy(&record, bytes, sizeof record);
    else
        reader.readBytes(&record, sizeof record);
    return record;
}

/// Reads `count` elements at the reader's position into a vector or string, which gets that size. A count that the file
/// cannot hold fails before it takes memory.
template <class Container>
void readArray(QSFBlockedReader& reader, std::uint64_t count, Container& to) {
    using Element = typename Container::value_type;
    static_assert(std::is_trivially_copyable_v<Element>);
    reader.requireAvailable(count, sizeof(Element));
    to.resize(count);
    reader.readBytes(to.data(), count * sizeof(Element));
}

/// The same into memory that is there; what it held is lost also where the read fails.
template <class Element>
void readArray(QSFBlockedReader& reader, std::span<Element> to) {
    static_assert(std::is_trivially_copyable_v<Element>);
    reader.readBytes(to.data(), to.size_bytes());
}

}  // namespace kvan::io
