#pragma once

#include <string>

namespace kvan::io::qsf2sql::passes {

/// The local time of an acquisition as "YYYY-MM-DDThh:mm:ss.fff+hh:mm" out of its UTC fields and the minutes by which
/// local time is ahead of UTC.
///
/// Fields of the clock may exceed their usual range and carry over. Throws `std::out_of_range` for an offset of a day
/// or more, for a date that does not exist and for a year outside 1400 to 10000, in UTC or in local time.
std::string utcToLocalTimeIso8601(int year, int month, int day, int hour, int minute, int second, int milliseconds,
                                  int offsetMinutes);

}  // namespace kvan::io::qsf2sql::passes
