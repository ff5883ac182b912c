#include <math-functions/function.h>
#include <math-functions/invert.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace kvan::math {

namespace {

constexpr double g_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double g_infinity = std::numeric_limits<double>::infinity();
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
    const struct {
        const CFunction& f;
        double y, lower, upper;
        std::optional<double> x;
    } cases[] = {
        {square, 2.0, 0.0, 2.0, std::sqrt(2.0)},
        {square, 2.0, -1.0, 2.0, std::sqrt(2.0)},
        {square, 9.0, 3.0, 5.0, 3.0},
        {square, 25.0, 3.0, 5.0, 5.0},
        {square, 2.0, 3.0, 5.0, std::nullopt},
        {square, 2.0, -3.0, 3.0, std::nullopt},
        {square, 4.0, 3.0, 1.0, std::nullopt},
        {square, 1.0, 2.0, 2.0, std::nullopt},
        {square, 1e8, 0.0, g_largest, 1e4},
        {square, 1.0, 0.0, g_largest, 1.0},
        {square, 1e-30, 0.0, g_largest, 1e-15},
        {square, -1.0, 0.0, g_largest, std::nullopt},
        {square, -1.0, 0.0, g_infinity, std::nullopt},
        {square, 4.0, -g_infinity, 5.0, std::nullopt},
        {square, 4.0, 0.0, g_nan, std::nullopt},
        {square, 4.0, g_nan, 5.0, std::nullopt},
        {square, g_nan, 0.0, 5.0, std::nullopt},
        {square, g_infinity, 0.0, 5.0, std::nullopt},
        {constant, 3.0, 1.0, 2.0, 1.0},
        {constant, 4.0, 1.0, g_largest, std::nullopt},
        {damaged, 4.0, 0.0, 5.0, std::nullopt},
        {damaged, 4.0, 0.0, g_largest, std::nullopt},
        {huge, 0.0, -1e9, 1e9, std::nullopt},
        {huge, 0.0, 0.0, 1.0, 0.6180339887498949},
        {steps, 0.0, -100.0, 100.0, 10.0},
        {CFunction(), 0.0, 0.0, 1.0, std::nullopt},
    };
    for (const auto& sample : cases) {
        const auto x = inverseOf(sample.f, sample.y, 1.0, sample.lower, sample.upper);
        SCOPED_TRACE(std::to_string(sample.y) + " from " + std::to_string(sample.lower));
        ASSERT_EQ(x.has_value(), sample.x.has_value());
        if (x) {
            EXPECT_NEAR(*x, *sample.x, 1e-15 * std::abs(*sample.x));
        }
        for (const double guess : {g_nan, -g_infinity, 0.0, 1.5, 1e30})
            EXPECT_EQ(inverseOf(sample.f, sample.y, guess, sample.lower, sample.upper), x);
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
