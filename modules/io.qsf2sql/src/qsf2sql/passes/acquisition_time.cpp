#include "qsf2sql/passes/acquisition_time.h"

#include <boost/throw_exception.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace kvan::io::qsf2sql::passes {

namespace {

// In come the UTC fields of the analysis header. Fields out of range, years outside 1400 to 10000 and days that do not
// exist in the Gregorian calendar are refused in these words and in this order, which callers see as the reason why an
// analysis does not open. Both the UTC date and the local one must be in range.
//
// Tolerated: a clock beyond its range, which carries over into the date.

void require(bool condition, const char* failure) {
    if (!condition)
        BOOST_THROW_EXCEPTION(std::out_of_range(failure));
}

void requireYear(int year) {
    require(year >= 1400 && year <= 10000, "Year is out of valid range: 1400..10000");
}

std::chrono::sys_days checkedDate(int year, int month, int day) {
    require(day >= 1 && day <= 31, "Day of month value is out of range 1..31");
    require(month >= 1 && month <= 12, "Month number is out of range 1..12");
    requireYear(year);
    const std::chrono::year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)));
    require(date.ok(), "Day of month is not valid for year");
    return date;
}

}  // namespace

std::string utcToLocalTimeIso8601(int year, int month, int day, int hour, int minute, int second, int milliseconds,
                                  int offsetMinutes) {
    namespace chrono = std::chrono;
    require(std::abs(offsetMinutes) < 24 * 60, "Time-zone offset > 23:59.");

    const auto local = checkedDate(year, month, day) + chrono::hours(hour) + chrono::minutes(minute) +
                       chrono::seconds(second) + chrono::milliseconds(milliseconds) + chrono::minutes(offsetMinutes);
    const auto localDay = chrono::floor<chrono::days>(local);
    const chrono::year_month_day date(localDay);
    const chrono::hh_mm_ss<chrono::milliseconds> clock(local - localDay);
    requireYear(static_cast<int>(date.year()));

    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03d%c%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()),
                  offsetMinutes < 0 ? '-' : '+', std::abs(offsetMinutes) / 60, std::abs(offsetMinutes) % 60);
    return text;
}

}  // namespace kvan::io::qsf2sql::passes
