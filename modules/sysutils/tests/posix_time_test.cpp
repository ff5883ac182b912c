#include "lib/iso_date_time.h"

#include <sysutils/posix_time.h>
#include <test-support/support.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>

namespace kvan::sys::posix {
namespace {

TEST(ToIsoExtendedString, EveryOptionAndItsLimits) {
    using boost::posix_time::ptime;
    const ptime time(boost::gregorian::date(2018, 2, 3),
                     boost::posix_time::time_duration(4, 5, 6) + boost::posix_time::microseconds(7));
    const char* const expected[] = {
        "2018-02-03 04:05:06",        "2018-02-03T04:05:06",     "2018-02-03 04:05:06.000007",
        "2018-02-03T04:05:06.000007", "2018-02-03 04:05:06.000", "2018-02-03T04:05:06.000",
    };
    for (int option = 0; option <= 5; ++option)
        EXPECT_EQ(toIsoExtendedString(time, static_cast<FormatOption::type>(option)), expected[option]);
    EXPECT_EQ(toIsoExtendedString(ptime(boost::date_time::not_a_date_time), FormatOption::T), "not-a-date-time");
    EXPECT_EQ(test::failureOf([&] { toIsoExtendedString(time, static_cast<FormatOption::type>(6)); }),
              "Invalid format option (value: 6)");
}

TEST(AppendIsoTime, FieldThatItsWidthCannotHold) {
    const auto failureOf = [](int hours, int minutes) {
        std::string text;
        const boost::posix_time::time_duration time(hours, minutes, 0);
        return test::failureOf([&] { sys::date_time::internal::append_iso_time(text, time, FormatOption::T); });
    };
    EXPECT_EQ(failureOf(100, 0), "Invalid hours in time");
    EXPECT_EQ(failureOf(0, -1), "Invalid minutes in time");
}

}  // namespace
}  // namespace kvan::sys::posix
