#include "iso_date_time.h"

#include <sysutils/posix_time.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::sys::posix {

std::string toIsoExtendedString(const boost::posix_time::ptime& time, FormatOption::type option) {
    if (option < 0 || option > 5)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("Invalid format option (value: " + std::to_string(static_cast<int>(option)) + ")"));
    // Special values (infinities, not-a-date-time) have no fields.
    if (time.is_special())
        return "not-a-date-time";

    std::string text;
    // The longest form, with six digits of the second.
    text.reserve(26);
    date_time::internal::append_iso_date(text, time.date().year_month_day());
    text += (option & 1) != 0 ? 'T' : ' ';
    date_time::internal::append_iso_time(text, time.time_of_day(), option);
    return text;
}

}  // namespace kvan::sys::posix
