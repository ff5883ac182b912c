#pragma once

#include "logger/logger.h"
#include "qsf2sql/qsflib/ResourceRecords.h"
#include "sysutils/platform.h"

#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace kvan::io {

/// A native file, read block by block or by position. Owns the file. One position, so one thread at a time.
///
/// A short read, a failed seek or a claim that the file cannot hold throws `Qsf2SqlFileFormatError` "Error reading QSF
/// files." and leaves the reader failed: each later read and seek ends in the same words, also a seek back. Standing at
/// or behind the end of the file is no failure, and a read of 0 bytes succeeds anywhere.
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

    /// Reads `count` bytes at the position and moves behind them.
    void read(char* destination, std::int64_t count);
    void seekTo(std::uint64_t offset);
    void skip(std::int64_t count);
    std::uint64_t tell() const { return m_position; }

    /// Fails as a read of `count` elements of `size` bytes at the position would, before memory is taken for them.
    void requireAvailable(std::uint64_t count, std::uint64_t size);

    /// Finds the block at `blockPosition`, sets `blockSize` and gives the size: of a container without its own 24
    /// bytes, leaving the position at the contained entry; of any other block whole, leaving the position at its first
    /// byte. 0 ends the walk. The caller adds `blockSize` to `blockPosition` to go on.
    std::uint64_t nextBlock();

    [[noreturn]] void readError();

    std::uint64_t blockPosition = 0;
    std::uint64_t blockSize = 0;

private:
    logging::Logger m_logger;
    std::unique_ptr<sys::PositionedFile> m_file;
    std::uint64_t m_position = 0;
    bool m_failed = false;
    std::vector<char> m_window;  // bytes of the file from m_windowStart on
    std::uint64_t m_windowStart = 0;
    std::uint64_t m_windowSize = 0;
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
