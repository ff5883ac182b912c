#include "sysutils/posix_time.h"

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/throw_exception.hpp>
#include <cstdint>
#include <stdexcept>

namespace kvan::sys::posix {

namespace {

void appendPadded(std::string& text, std::int64_t value, std::size_t width) {
    const std::string digits = std::to_string(value);
    if (digits.size() < width)
        text.append(width - digits.size(), '0');
    text += digits;
}

}  // namespace

std::string toIsoExtendedString(const boost::posix_time::ptime& time, FormatOption::type option) {
    if (option < 0 || option > 5)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("Invalid format option (value: " + std::to_string(static_cast<int>(option)) + ")"));
    if (time.is_special())
        return "not-a-date-time";

    const auto date = time.date().year_month_day();
    const auto clock = time.time_of_day();
    const std::int64_t microseconds = clock.total_microseconds() % 1000000;

    std::string text;
    appendPadded(text, date.year, 4);
    text += '-';
    appendPadded(text, date.month.as_number(), 2);
    text += '-';
    appendPadded(text, date.day.as_number(), 2);
    text += (option & 1) != 0 ? 'T' : ' ';
    appendPadded(text, clock.hours(), 2);
    text += ':';
    appendPadded(text, clock.minutes(), 2);
    text += ':';
    appendPadded(text, clock.seconds(), 2);
    if ((option & 4) != 0) {
        text += '.';
        appendPadded(text, microseconds / 1000, 3);
    } else if ((option & 2) != 0) {
        text += '.';
        appendPadded(text, microseconds, 6);
    }
    return text;
}

}  // namespace kvan::sys::posix
