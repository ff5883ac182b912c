#include <math-base/polynomials.h>
#include <test-support/support.h>

namespace kvan::math {

namespace {

using test::g_infinity;
const char* const g_notIncreasing = "Polynomial not strictly monotonously increasing at x0.";

using test::failureOf;

TEST(PolynomialRoots, FindsAllRootsRealAndComplex) {
    // (x - 1) (x - 2) (x + 3) (x^2 + 4), by hand.
    const double coefficients[] = {24, -28, 6, -3, 0, 1};
    std::vector<std::complex<double>> roots(9);
    polynomialRoots(std::size(coefficients), coefficients, roots);
    ASSERT_EQ(roots.size(), 5U);
    for (const std::complex<double> expected : {std::complex<double>{1, 0}, {2, 0}, {-3, 0}, {0, 2}, {0, -2}})
        EXPECT_TRUE(std::any_of(roots.begin(), roots.end(), [&](std::complex<double> root) {
            return std::abs(root - expected) < 1e-12;
        })) << expected;
}

TEST(PolynomialRoots, RefusesWhatHasNoRoots) {
    std::vector<std::complex<double>> roots;
    const double zeroOnTop[] = {1, 2, 0};
    EXPECT_EQ(failureOf([&] { polynomialRoots(3, zeroOnTop, roots); }), "Highest-order coefficient must not be zero.");
    EXPECT_EQ(test::failureOf<std::out_of_range>([&] { polynomialRoots(1, zeroOnTop, roots); }),
              "Too few coefficients.");
    for (const double bad : {g_infinity, std::nan(""), 1e300}) {
        const double coefficients[] = {bad, bad, 1, 1e-300};
        EXPECT_EQ(failureOf([&] { polynomialRoots(4, coefficients, roots); }), "DGEEV failed.") << bad;
    }
}

TEST(MonotonicPolyRange, EndsAtTheNearestStationaryPoints) {
    const struct {
        const char* name;
        std::vector<double> polynomial;
        double x0, lower, upper;
    } cases[] = {
        {"line", {5, 2}, 7, -g_infinity, g_infinity},
        {"line with zeros on top", {5, 2, 0, 0}, 7, -g_infinity, g_infinity},
        {"parabola, right branch", {0, -2, 1}, 3, 1, g_infinity},
        {"parabola, left branch", {0, 2, -1}, 0, -g_infinity, 1},
        {"between two", {0, 3, 0, -1}, 0.5, -1, 1},
        {"beyond the last", {0, -3, 0, 1}, 2, 1, g_infinity},
        {"complex stationary points", {0, 3, 0, 1}, 2, -g_infinity, g_infinity},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.name);
        const auto [lower, upper] = monotonicPolyRange(sample.polynomial, sample.x0);
        EXPECT_TRUE(lower == sample.lower || std::abs(lower - sample.lower) < 1e-14) << lower;
        EXPECT_TRUE(upper == sample.upper || std::abs(upper - sample.upper) < 1e-14) << upper;
    }
    // The derivative's double root at 0 bounds the axis all the same.
    EXPECT_EQ(monotonicPolyRange({0, 0, 0, 1}, 2), std::make_pair(0.0, g_infinity));
}

TEST(MonotonicPolyRange, FailsWhereTheCurveDoesNotRise) {
    const std::vector<double> parabola = {0, -2, 1};
    for (const double x0 : {1.0, 0.0, std::nan("")})
        EXPECT_EQ(failureOf([&] { monotonicPolyRange(parabola, x0); }), g_notIncreasing) << x0;
    EXPECT_EQ(failureOf([] { monotonicPolyRange({3}, 0); }), g_notIncreasing);
    EXPECT_EQ(failureOf([] { monotonicPolyRange({0, std::nan(""), 1}, 0); }), g_notIncreasing);
    EXPECT_EQ(failureOf([] { monotonicPolyRange({0, g_infinity, 1, 1}, 0); }), "DGEEV failed.");
}

}  // namespace

}  // namespace kvan::math
