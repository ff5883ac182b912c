#include <qsf2sql/errors.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <algorithm>
#include <boost/throw_exception.hpp>

// Bytes reach a parser by one of two roads: out of a window of the file that was read before, or, when it asks for no
// less than a window, by a system call straight into its memory. Which one it was makes no difference to what it gets.
//
// What never changes: nothing is read before it is asked for, positions beyond the file are no fault, and after the
// first fault every call fails in the same words, as a stream in a failed state does. A count that a file claims takes
// no memory before the size of the file allows it.
namespace kvan::io {

namespace {

/// A scan starts with small windows, so that large blocks that are only stepped over cost little. It doubles them while
/// it moves on by less than a window and finds something to read at least every so many bytes: there one large read is
/// cheaper than several small ones. Beyond what the first two caches hold, larger windows gain nothing.
constexpr std::uint64_t g_scanShortest = 1024;
constexpr std::uint64_t g_scanLongest = 64 * 1024;
constexpr std::uint64_t g_sparsestReads = 2048;

/// Holds the heads of a spectrum block, so that they cost one system call together.
constexpr std::uint64_t g_arraysLookAhead = 512;

std::unique_ptr<sys::PositionedFile> openFile(const boost::filesystem::path& path) {
    auto file = sys::PositionedFile::open(path);
    if (!file)
        BOOST_THROW_EXCEPTION(Qsf2SqlCannotOpenFileError("Can't open file: " + sys::pathToUtf8(path)));
    return file;
}

}  // namespace

QSFBlockedReader::QSFBlockedReader(const boost::filesystem::path& file, Access access)
    : QSFBlockedReader(openFile(file), access) {}

QSFBlockedReader::QSFBlockedReader(std::unique_ptr<sys::PositionedFile> file, Access access)
    : m_file(std::move(file)),
      m_lookAhead(access == Access::Scan ? g_scanShortest : g_arraysLookAhead),
      m_shortestLookAhead(m_lookAhead),
      m_longestLookAhead(access == Access::Scan ? g_scanLongest : g_arraysLookAhead) {}

void QSFBlockedReader::readBytes(void* destination, std::uint64_t count) {
    requireSound();
    if (count == 0)
        return;
    auto* to = static_cast<char*>(destination);
    const std::uint64_t offset = m_position - m_windowStart;
    if (offset < m_windowSize) {
        const std::uint64_t held = std::min(count, m_windowSize - offset);
        std::memcpy(to, m_window.data() + offset, held);
        to += held;
        m_position += held;
        count -= held;
        if (count == 0) {
            ++m_windowReads;
            return;
        }
    }
    // What is no shorter than a window goes straight to its place; the rest comes with what follows it in the file.
    const bool isDirect = count >= m_lookAhead;
    const std::uint64_t size = isDirect ? count : nextWindowSize(count);
    if (!isDirect && m_window.size() < size)
        m_window.resize(size);
    const std::int64_t got =
        m_file->readAt(isDirect ? to : m_window.data(), static_cast<std::int64_t>(size), m_position);
    if (got < static_cast<std::int64_t>(count))
        readError();
    if (!isDirect) {
        m_windowStart = m_position;
        m_windowSize = static_cast<std::uint64_t>(got);
        m_windowReads = 1;
        std::memcpy(to, m_window.data(), count);
    }
    m_position += count;
}

std::uint64_t QSFBlockedReader::nextWindowSize(std::uint64_t wanted) {
    const std::uint64_t beyond = m_position - m_windowStart;  // huge before the window
    const bool isDense = beyond <= 2 * m_windowSize && m_windowReads * g_sparsestReads >= m_windowSize;
    m_lookAhead = isDense ? std::min(2 * m_lookAhead, m_longestLookAhead) : m_shortestLookAhead;
    return std::max(m_lookAhead, wanted);
}

void QSFBlockedReader::requireAvailable(std::uint64_t count, std::uint64_t size) {
    requireSound();
    // Divided, since a product could wrap. The size is asked for anew only where the last known one does not do.
    if (count > bytesLeft() / size)
        m_fileSize = m_file->size();  // another process may be writing to the file
    if (count > bytesLeft() / size)
        readError();
}

void QSFBlockedReader::readError() {
    m_failed = true;
    BOOST_THROW_EXCEPTION(Qsf2SqlFileFormatError("Error reading QSF files."));
}

}  // namespace kvan::io
