#include "line_format.h"

#include "level_names.h"

#include <sysutils/posix_time.h>
#include <sysutils/process.h>

#include <boost/date_time/c_local_time_adjustor.hpp>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <charconv>
#include <chrono>
#include <mutex>

// A line is built in one string, front to back, without a stream: this is the cost of every line that is written. The
// time is split into fields by arithmetic alone; the C library is asked for the zone's offset only, since it takes a
// lock of the process and looks at its zone file. `levelOfLine` reads the same constants back, so that the colours
// cannot part from the format.
namespace kvan::logging::impl {

namespace {

using boost::posix_time::ptime;

constinit std::mutex g_timeZoneMutex;

/// No zone changes its offset but at a full quarter of an hour, so a thread asks for it that rarely.
constexpr std::int64_t g_offsetSeconds = 15 * 60;

ptime localNow() {
    using std::chrono::microseconds;
    thread_local std::int64_t quarterOfOffset = -1;
    thread_local std::int64_t offsetSeconds = 0;
    // Not by the clocks of Boost: they take the C library's lock for each time they split into fields.
    const auto sinceEpoch =
        std::chrono::duration_cast<microseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
    const ptime now(boost::gregorian::date(1970, 1, 1), boost::posix_time::microseconds(sinceEpoch));
    const std::int64_t quarter = sinceEpoch / (g_offsetSeconds * 1000000);
    if (quarter != quarterOfOffset) {
        const std::lock_guard<std::mutex> guard(g_timeZoneMutex);
        offsetSeconds = (boost::date_time::c_local_adjustor<ptime>::utc_to_local(now) - now).total_seconds();
        quarterOfOffset = quarter;
    }
    return now + boost::posix_time::seconds(offsetSeconds);
}

void appendHexadecimal(std::string& line, std::uint64_t value) {
    char digits[16];
    line.append(digits, std::to_chars(digits, digits + sizeof digits, value, 16).ptr);
}

constexpr std::string_view g_beforeThread = " [tid=0x";
constexpr std::string_view g_beforeLevel = "] [";
constexpr std::string_view g_beforeName = "] ";
constexpr std::string_view g_beforeText = ": ";

}  // namespace

std::string formatLine(std::string_view name, Level::type level, std::string_view text) {
    const std::string_view message = text.substr(0, text.find_last_not_of("\r\n") + 1);
    const std::string_view levelName = g_levelNames[level];
    std::string line = sys::posix::toIsoExtendedString(localNow(), sys::posix::FormatOption::BlankMicroseconds);
    // 48: more than the thread's number, the level and the marks between them take.
    line.reserve(line.size() + name.size() + message.size() + 48);
    line += g_beforeThread;
    appendHexadecimal(line, sys::threadId());
    line += g_beforeLevel;
    line += levelName;
    line.append(g_levelNameWidth - levelName.size(), ' ');
    line += g_beforeName;
    line += name;
    line += g_beforeText;
    line += message;
    line += '\n';
    return line;
}

std::optional<Level::type> levelOfLine(std::string_view line) {
    // The first one: the time and the thread before it hold no such mark, the name and the text after it may.
    const std::size_t before = line.find(g_beforeLevel);
    if (before == std::string_view::npos)
        return std::nullopt;
    const std::string_view padded = line.substr(before + g_beforeLevel.size(), g_levelNameWidth);
    return levelOfName(padded.substr(0, padded.find_last_not_of(' ') + 1));
}

void lockTimeZone() {
    g_timeZoneMutex.lock();
}

void unlockTimeZone() {
    g_timeZoneMutex.unlock();
}

}  // namespace kvan::logging::impl
