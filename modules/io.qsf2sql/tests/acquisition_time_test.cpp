#include "qsf2sql/passes/acquisition_time.h"

#include <test-support/support.h>

namespace kvan::io::qsf2sql::passes {
namespace {

/// Year, month, day, hour, minute, second, milliseconds, offset in minutes.
using Utc = std::array<int, 8>;

TEST(UtcToLocalTimeIso8601, GivesLocalTimeOrNamesTheFirstFieldOutOfRange) {
    const std::string badDay = "Day of month value is out of range 1..31";
    const std::string badMonth = "Month number is out of range 1..12";
    const std::string badYear = "Year is out of valid range: 1400..10000";
    const std::string noSuchDay = "Day of month is not valid for year";
    const std::string badOffset = "Time-zone offset > 23:59.";
    const std::pair<Utc, std::string> cases[] = {
        {{2015, 3, 4, 9, 20, 30, 125, 60}, "2015-03-04T10:20:30.125+01:00"},
        {{2015, 3, 4, 23, 30, 0, 0, -90}, "2015-03-04T22:00:00.000-01:30"},
        {{2016, 2, 29, 12, 0, 0, 7, 0}, "2016-02-29T12:00:00.007+00:00"},
        {{2015, 12, 31, 23, 59, 59, 999, 1439}, "2016-01-01T23:58:59.999+23:59"},
        {{2015, 1, 1, 0, 0, 0, 0, -1}, "2014-12-31T23:59:00.000-00:01"},
        {{2015, 1, 1, 255, 255, 255, 65535, 0}, "2015-01-11T19:20:20.535+00:00"},  // the clock carries over
        {{1400, 1, 1, 0, 0, 0, 0, 0}, "1400-01-01T00:00:00.000+00:00"},
        {{10000, 12, 31, 0, 0, 0, 0, 0}, "10000-12-31T00:00:00.000+00:00"},
        {{1400, 1, 1, 0, 0, 0, 0, -1}, badYear},
        {{10000, 12, 31, 24, 0, 0, 0, 0}, badYear},
        {{1399, 12, 31, 0, 0, 0, 0, 0}, badYear},
        {{1900, 2, 29, 0, 0, 0, 0, 0}, noSuchDay},
        {{0, 0, 0, 0, 0, 0, 0, 0}, badDay},
        {{2015, 13, 32, 0, 0, 0, 0, 0}, badDay},
        {{0, 13, 31, 0, 0, 0, 0, 0}, badMonth},
        {{0, 0, 0, 0, 0, 0, 0, 1440}, badOffset},
        {{2015, 3, 4, 0, 0, 0, 0, -32768}, badOffset},
    };
    for (const auto& [utc, expected] : cases) {
        std::string text;
        text += test::failureOf<std::out_of_range>(
            [&, &utc = utc] { text = std::apply([](auto... field) { return utcToLocalTimeIso8601(field...); }, utc); });
        EXPECT_EQ(text, expected);
    }
}

}  // namespace
}  // namespace kvan::io::qsf2sql::passes
