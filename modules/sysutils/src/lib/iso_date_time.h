#pragma once

#include <sysutils/posix_time.h>

#include <boost/date_time/gregorian/greg_date.hpp>

namespace kvan::sys::date_time::internal {

/// Appends "YYYY-MM-DD" to `text`. Throws `std::runtime_error` "Invalid year in date" and the like for a field that its
/// width cannot hold.
void append_iso_date(std::string& text, const boost::gregorian::date::ymd_type& date);

/// Appends "hh:mm:ss" to `text`, then a point and the digits of the second that `option` asks for. Throws as above,
/// "Invalid hours in time" and the like.
void append_iso_time(std::string& text, const boost::posix_time::time_duration& time, posix::FormatOption::type option);

}  // namespace kvan::sys::date_time::internal
