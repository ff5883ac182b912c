#include "iso_date_time.h"

#include <boost/spirit/include/karma.hpp>
#include <boost/throw_exception.hpp>
#include <cstdint>
#include <iterator>
#include <stdexcept>

// A time as text, field by field: each with a fixed width and leading zeros, so that lines of a log sort by time. A
// field that its width cannot hold is a fault of the caller and throws; the text then holds the fields before it.
// Fractions are cut, not rounded: a rounded one could show a second that has not come yet.
namespace kvan::sys::date_time::internal {

namespace {

/// Digits of fixed width, each decimal place through the generator: its own padding buffers and counts in vain.
template <unsigned Width>
void appendField(std::string& text, std::int64_t value, const char* what) {
    namespace karma = boost::spirit::karma;
    std::int64_t place = 1;
    for (unsigned digit = 0; digit < Width; ++digit)
        place *= 10;
    bool isWritten = value >= 0 && value < place;
    for (place /= 10; isWritten && place > 0; place /= 10)
        isWritten = karma::generate(std::back_inserter(text), karma::uint_, static_cast<unsigned>(value / place % 10));
    if (!isWritten)
        BOOST_THROW_EXCEPTION(std::runtime_error(what));
}

}  // namespace

void append_iso_date(std::string& text, const boost::gregorian::date::ymd_type& date) {
    appendField<4>(text, static_cast<int>(date.year), "Invalid year in date");
    text += '-';
    appendField<2>(text, date.month.as_number(), "Invalid month in date");
    text += '-';
    appendField<2>(text, date.day.as_number(), "Invalid day in date");
}

void append_iso_time(std::string& text, const boost::posix_time::time_duration& time,
                     posix::FormatOption::type option) {
    appendField<2>(text, time.hours(), "Invalid hours in time");
    text += ':';
    appendField<2>(text, time.minutes(), "Invalid minutes in time");
    text += ':';
    appendField<2>(text, time.seconds(), "Invalid seconds in time");
    const std::int64_t microseconds = time.total_microseconds() % 1000000;
    // Three digits win where both are asked for.
    if ((option & 4) != 0) {
        text += '.';
        appendField<3>(text, microseconds / 1000, "Invalid fractional seconds in time");
    } else if ((option & 2) != 0) {
        text += '.';
        appendField<6>(text, microseconds, "Invalid fractional seconds in time");
    }
}

}  // namespace kvan::sys::date_time::internal
