#include "rolling_file_sink.h"

#include "diagnostic.h"
#include "path_expansion.h"

#include <sysutils/text_conversion.h>

#include <algorithm>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/exception.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/throw_exception.hpp>
#include <charconv>
#include <functional>
#include <vector>

// A log file with numbered backups. Two things never change, whatever the file system does: no line is lost without a
// word, and the caller is never held up or thrown at. So every step of a roll-over may fail by itself: a backup that
// cannot be removed is moved aside, a file that cannot be renamed goes on growing beyond its limit, one that cannot be
// opened again sends its lines to standard error. The size is asked of the file system at each line, since other
// processes may write to the same file. "reset-oldest" fills the numbers as a ring, in which a number says nothing of
// the age; "steady-rotate" keeps number 0 the latest.
namespace kvan::logging::impl {

namespace {

namespace fs = boost::filesystem;
using boost::property_tree::ptree;

constexpr std::int64_t g_defaultFileSize = 1024000;
constexpr std::int64_t g_smallestFileSize = 10240;
constexpr std::int64_t g_defaultBackups = 10;
constexpr int g_systemErrorCode = 5;

std::string textOf(const ptree& sink, const char* element) {
    return boost::algorithm::trim_copy(sink.get<std::string>(element, ""));
}

std::optional<std::int64_t> numberIn(std::string_view digits) {
    std::int64_t number = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return fault == std::errc() && end == digits.data() + digits.size() ? std::optional(number) : std::nullopt;
}

std::uint64_t maxFileSizeOf(const ptree& sink) {
    // What is no number counts as not given; small limits would roll the file over at every few lines.
    const std::int64_t size = numberIn(textOf(sink, "max-file-size")).value_or(g_defaultFileSize);
    if (size < 0)
        return g_defaultFileSize;
    return static_cast<std::uint64_t>(size == 0 ? 0 : std::max(size, g_smallestFileSize));
}

std::int64_t maxBackupsOf(const ptree& sink) {
    const std::int64_t backups = numberIn(textOf(sink, "max-backups")).value_or(g_defaultBackups);
    return backups < 1 ? g_defaultBackups : backups;
}

/// Absolute, so that the program may change its working directory.
fs::path pathOf(const ptree& sink) {
    const std::wstring text = sys::do_widen(sink.get<std::string>("file-path"));
    return fs::absolute(sys::pathFromUtf8(sys::do_narrow(expandTokens(text))));
}

bool isThere(const fs::path& path) {
    boost::system::error_code fault;
    const auto type = fs::symlink_status(path, fault).type();
    return type != fs::file_not_found && type != fs::status_error;
}

/// The name with ".old" and the first number after it that is free.
fs::path asideName(const fs::path& backup) {
    fs::path aside;
    std::uint64_t number = 0;
    do {
        aside = backup;
        aside += ".old" + std::to_string(number++);
    } while (isThere(aside));
    return aside;
}

}  // namespace

RollingFileSink::RollingFileSink(const SinkContext& context)
    : LockedSink(std::make_shared<std::mutex>()),
      m_path(pathOf(context.tree())),
      m_maxFileSize(maxFileSizeOf(context.tree())),
      m_maxBackups(maxBackupsOf(context.tree())),
      m_rollingType(rollingTypeOf(textOf(context.tree(), "rolling-type"))) {
    // A file that cannot be opened at the start is a fault of the configuration, later only of the moment. The code is
    // a fixed one, whatever the system says.
    boost::system::error_code fault;
    m_file = sys::AppendedFile::open(m_path, fault);
    if (!m_file)
        BOOST_THROW_EXCEPTION(
            fs::filesystem_error("Failed to open file for writing", m_path,
                                 boost::system::error_code(g_systemErrorCode, boost::system::system_category())));
}

RollingFileSink::RollingType RollingFileSink::rollingTypeOf(const std::string& name) {
    if (name == "steady-rotate")
        return RollingType::SteadyRotate;
    if (!name.empty() && name != "reset-oldest")
        KVAN_DIAGNOSE(Error, "Invalid rolling-type provided: " + name);
    return RollingType::ResetOldest;
}

void RollingFileSink::writeLocked(const std::string& formattedLine) {
    if (isTooLarge()) {
        if (m_rollingType == RollingType::ResetOldest)
            doRollOverResetOldest();
        else
            doRollOverSteadyRotate();
    }
    append(formattedLine);
}

bool RollingFileSink::isTooLarge() const {
    if (m_maxFileSize == 0)
        return false;
    boost::system::error_code fault;
    const std::uintmax_t size = fs::file_size(m_path, fault);
    return !fault && size > m_maxFileSize;
}

void RollingFileSink::append(const std::string& formattedLine) {
    std::size_t taken = 0;
    if (m_file) {
        // A full disk may have cut the line before; this one does not continue it.
        if (m_endsWithinLine && m_file->append("\n") == 1)
            m_endsWithinLine = false;
        taken = m_file->append(formattedLine);
        if (taken == formattedLine.size())
            return;
        m_endsWithinLine = m_endsWithinLine || taken > 0;
    }
    // Whole, although a part may stand in the file: a reader of the error channel has no other half.
    writeToErrorChannel(formattedLine);
}

void RollingFileSink::doRollOverResetOldest() {
    const fs::path backup = backupPath(m_nextBackup);
    removeBackup(backup);
    // Closed before the rename, which some systems refuse for an open file.
    m_file.reset();
    boost::system::error_code fault;
    fs::rename(m_path, backup, fault);
    if (fault)
        KVAN_DIAGNOSE(Error, "Error when trying to rename log file to backup one.\n");
    reopen();
    // Also after a rename that failed: the next number may be free.
    m_nextBackup = (m_nextBackup + 1) % m_maxBackups;
}

void RollingFileSink::doRollOverSteadyRotate() {
    removeBackup(backupPath(m_maxBackups - 1));
    m_file.reset();
    boost::system::error_code fault = shiftBackups();
    if (fault)
        KVAN_DIAGNOSE(Error, "Error when trying to rename log file: " + fault.message());
    else
        fs::rename(m_path, backupPath(0), fault);
    if (fault)
        KVAN_DIAGNOSE(Error, "Failed to rotate: " + fault.message() +
                                 "\nThe original file will still be used regardless of file size excess.\n");
    reopen();
}

void RollingFileSink::removeBackup(const fs::path& backup) {
    if (!isThere(backup))
        return;
    boost::system::error_code fault;
    fs::remove(backup, fault);
    if (!fault)
        return;
    KVAN_DIAGNOSE(Error, "Error when trying to delete old log file: " + fault.message());
    const fs::path aside = asideName(backup);
    KVAN_DIAGNOSE(Error, "So we rename it to filename: " + sys::pathToUtf8(aside));
    fs::rename(backup, aside, fault);
    if (fault)
        KVAN_DIAGNOSE(Error, "And we also cannot rename it!\n");
}

boost::system::error_code RollingFileSink::shiftBackups() {
    // What is there is looked up, since the number of backups that may be there has no limit.
    boost::system::error_code fault;
    std::vector<std::int64_t> indexes;
    for (fs::directory_iterator entry(m_path.parent_path(), fault), end; !fault && entry != end;
         entry.increment(fault)) {
        const auto index = backupIndex(entry->path());
        if (index && *index < m_maxBackups - 1)
            indexes.push_back(*index);
    }
    // From the highest on: each name is free when its predecessor moves there.
    std::sort(indexes.begin(), indexes.end(), std::greater<>());
    for (auto index = indexes.begin(); index != indexes.end() && !fault; ++index)
        fs::rename(backupPath(*index), backupPath(*index + 1), fault);
    return fault;
}

void RollingFileSink::reopen() {
    boost::system::error_code fault;
    m_file = sys::AppendedFile::open(m_path, fault);
    m_endsWithinLine = false;
    if (!m_file)
        KVAN_DIAGNOSE(Error, "Failed to open file for writing: " + sys::pathToUtf8(m_path) +
                                 "\nFalling back to output into error channel instead\n");
}

std::optional<std::int64_t> RollingFileSink::backupIndex(const fs::path& file) const {
    const std::string digits = file.stem().extension().string();
    const auto index = numberIn(std::string_view(digits).substr(std::min<std::size_t>(digits.size(), 1)));
    // The name must be the very one that the number gives: "app.007.log" is none of ours.
    return index && *index >= 0 && backupPath(*index).filename() == file.filename() ? index : std::nullopt;
}

fs::path RollingFileSink::backupPath(std::int64_t index) const {
    fs::path extension = fs::path(".") += std::to_string(index);
    extension += m_path.extension();
    return fs::path(m_path).replace_extension(extension);
}

}  // namespace kvan::logging::impl
