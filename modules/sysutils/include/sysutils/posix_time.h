#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <string>

namespace kvan::sys::posix {

namespace FormatOption {
/// Bit 0: a `T` between date and time instead of a blank. Bit 1: six digits of fractional seconds. Bit 2: three digits,
/// whatever bit 1 says.
enum type { Blank = 0, T = 1, BlankMicroseconds = 2, TMicroseconds = 3, BlankMilliseconds = 4, TMilliseconds = 5 };
}  // namespace FormatOption

/// A time as "YYYY-MM-DD hh:mm:ss" with the parts that `option` adds; digits beyond the wanted ones are cut, not
/// rounded. "not-a-date-time" for a special value. Throws `std::runtime_error` "Invalid format option (value: N)"
/// beyond 5.
std::string toIsoExtendedString(const boost::posix_time::ptime& time, FormatOption::type option);

}  // namespace kvan::sys::posix
