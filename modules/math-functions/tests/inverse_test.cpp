#include <math-functions/function.h>
#include <math-functions/invert.h>
#include <test-support/support.h>

namespace kvan::math {

namespace {

using test::g_infinity;
using test::g_nan;
constexpr double g_largest = std::numeric_limits<double>::max();

std::optional<double> inverseOf(const CFunction& f, double y, double guess, double lower, double upper) {
    bool found = true;
    double value = -77.0;
    f.Inverse(y, guess, lower, upper, found, value);
    if (!found) {
        EXPECT_EQ(value, -77.0);
    }
    return found ? std::optional<double>(value) : std::nullopt;
}

TEST(Inverse, FindsOrTells) {
    const CFunction square(6, {0.0, 0.0, 1.0}, 0.0, 0.0);
    const CFunction constant(6, {3.0}, 0.0, 0.0);
    const CFunction damaged(6, {0.0, g_nan, 1.0}, 0.0, 0.0);
    const CFunction huge(6, {-1e308, 1e308, 1e308}, 0.0, 0.0);
    const CFunction steps(8, {0.0, 10.0}, {-1.0, 1.0});
    const CFunction empty;
    struct Search {
        double y, lower, upper, x;
    };
    constexpr double nothing = g_nan;
    const std::pair<const CFunction&, std::vector<Search>> cases[] = {
        {square, {{2, 0, 2, std::sqrt(2.0)}, {2, -1, 2, std::sqrt(2.0)}, {9, 3, 5, 3}, {25, 3, 5, 5}}},
        {square, {{2, 3, 5, nothing}, {2, -3, 3, nothing}, {4, 3, 1, nothing}, {1, 2, 2, nothing}}},
        {square, {{1e8, 0, g_largest, 1e4}, {1, 0, g_largest, 1}, {1e-30, 0, g_largest, 1e-15}}},
        {square, {{-1, 0, g_largest, nothing}, {-1, 0, g_infinity, nothing}, {4, -g_infinity, 5, nothing}}},
        {square, {{4, 0, g_nan, nothing}, {4, g_nan, 5, nothing}, {g_nan, 0, 5, nothing}, {g_infinity, 0, 5, nothing}}},
        {constant, {{3, 1, 2, 1}, {4, 1, g_largest, nothing}}},
        {damaged, {{4, 0, 5, nothing}, {4, 0, g_largest, nothing}}},
        {huge, {{0, -1e9, 1e9, nothing}, {0, 0, 1, 0.6180339887498949}}},
        {steps, {{0, -100, 100, 10}}},
        {empty, {{0, 0, 1, nothing}}},
    };
    for (const auto& [f, searches] : cases)
        for (const auto& [y, lower, upper, expected] : searches) {
            const auto x = inverseOf(f, y, 1.0, lower, upper);
            SCOPED_TRACE(testing::Message() << y << " from " << lower);
            ASSERT_EQ(x.has_value(), !std::isnan(expected));
            if (x) {
                EXPECT_NEAR(*x, expected, 1e-15 * std::abs(expected));
            }
            for (const double guess : {g_nan, -g_infinity, 0.0, 1.5, 1e30})
                EXPECT_EQ(inverseOf(f, y, guess, lower, upper), x);
        }
}

TEST(Inverse, AlwaysEnds) {
    double (*const shapes[])(double) = {
        [](double x) { return x < 1e299 ? -1.0 : 1.0; }, [](double x) { return std::sin(x * 1e9); },
        [](double x) { return x > 7.0 ? g_nan : x; },    [](double x) { return std::copysign(g_infinity, x - 3.0); },
        [](double x) { return -1.0 / (x + 1e-300); },    [](double) { return -1.0; },
        [](double x) { return std::exp(x) - 1e200; },
    };
    for (const auto shape : shapes)
        for (const double lower : {-1e300, -5.0, 0.0, 1e18})
            for (const double upper : {10.0, 1e300, g_largest}) {
                int evaluations = 0;
                const auto counted = [&](double x) {
                    ++evaluations;
                    return shape(x);
                };
                const auto x = invert(counted, 0.0, lower, upper);
                EXPECT_LE(evaluations, 2100);
                if (x) {
                    EXPECT_TRUE(*x >= lower && *x <= upper);
                }
            }
}

}  // namespace

}  // namespace kvan::math
