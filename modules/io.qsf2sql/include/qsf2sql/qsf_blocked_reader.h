#pragma once

#include <logger/logger.h>
#include <qsf2sql/qsflib/ResourceRecords.h>
#include <sysutils/platform.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

namespace kvan::io {

/// A native file, read block by block or by position. Owns the file. One position, so one thread at a time.
///
/// A short read, a failed seek or a claim that the file cannot hold throws `Qsf2SqlFileFormatError` "Error reading QSF
/// files." and leaves the reader failed: each later read and seek ends in the same words, also a seek back. Standing at
/// or behind the end of the file is no failure, and a read of 0 bytes succeeds at any position.
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

    /// Reads `count` bytes at the position and moves behind them.
    void read(char* destination, std::int64_t count) {
        const std::uint64_t offset = m_position - m_windowStart;  // huge ahead of the window
        const auto wanted = static_cast<std::uint64_t>(count);
        if (m_failed || count <= 0 || offset >= m_windowSize || wanted > m_windowSize - offset) [[unlikely]]
            return readBeyondWindow(destination, count);
        std::memcpy(destination, m_window.data() + offset, wanted);
        m_position += wanted;
        ++m_windowReads;
    }

    /// Moves to `offset` from the file's first byte, which may lie behind the end.
    void seekTo(std::uint64_t offset) {
        if (m_failed || offset > g_lastOffset) [[unlikely]]
            readError();
        m_position = offset;
    }

    /// Moves on by `count` bytes, or back if it is negative, but not ahead of the file's first byte.
    void skip(std::int64_t count) { seekTo(m_position + static_cast<std::uint64_t>(count)); }

    std::uint64_t tell() const { return m_position; }

    /// Fails as a read of `count` elements of `size` bytes (not 0) at the position would, before memory is taken for
    /// them.
    void requireAvailable(std::uint64_t count, std::uint64_t size);

    /// Finds the block at `blockPosition`, sets `blockSize` and gives the size: of a container without its own 24
    /// bytes, leaving the position at the contained entry; of any other block whole, leaving the position at its first
    /// byte. 0 ends the walk: the end marker, a block of size 0, an empty container. The caller adds `blockSize` to
    /// `blockPosition` to go on.
    std::uint64_t nextBlock();

    /// Leaves the reader failed and throws.
    [[noreturn]] void readError();

    std::uint64_t blockPosition = 0;
    std::uint64_t blockSize = 0;

private:
    static constexpr std::uint64_t g_lastOffset = INT64_MAX;

    void readBeyondWindow(char* destination, std::int64_t count);
    void refill(std::uint64_t wanted);
    std::uint64_t bytesLeft() const { return m_position < m_fileSize ? m_fileSize - m_position : 0; }

    logging::Logger m_logger;
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
    reader.read(reinterpret_cast<char*>(&record), sizeof record);
    return record;
}

}  // namespace kvan::io
