#include "transformation/tof2/PolynomialRoots.h"
#include "transformation/tof2/Tof2CubicRange.h"
#include "transformators.h"

namespace kvan::calibration {

namespace {

using Range = ICalibrationTransformator::Range;

void expectNear(const Range& range, double lower, double upper, double tolerance) {
    EXPECT_NEAR(range.first, lower, tolerance);
    EXPECT_TRUE(range.second == upper || std::abs(range.second - upper) <= tolerance) << range.second;
}

/// With c1 = 2.5e11 the slope of the linear term is 2.
TEST(MonotonicMassRange, EndsWhereTheLawTurns) {
    const std::tuple<const char*, TransformatorPtr, double, double> cases[] = {
        {"TOF linear", tof(8, 2.5e11, 0, 10, 0.5), 0, g_infinity},
        {"TOF quadratic, rising", tof(8, 2.5e11, 0.5, 10, 0.5), 0, g_infinity},
        {"TOF quadratic, turning at t = 100", tof(8, 2.5e11, -0.01, 10, 0.5), 0, 10000},
        {"TOF2 linear, shifted", tof2(8, 2.5e11, 0, 0, 4, 10, 0.5), -4, g_infinity},
        {"TOF2 quadratic, turning at t = 100", tof2(8, 2.5e11, -0.01, 0, 4, 10, 0.5), -4, 9996},
        {"TOF2 cubic, turning at t = 50 and 20/3", tof2(8, 2.5e11, -0.17, 0.002, 4, 10, 0.5), -4,
         20.0 / 3 * 20 / 3 - 4},
        {"TOF2 cubic, turning at t = 100 and -20/3", tof2(8, 2.5e11, 0.14, -0.001, 4, 10, 0.5), -4, 9996},
    };
    for (const auto& [name, law, lower, upper] : cases) {
        SCOPED_TRACE(name);
        expectNear(law->monotonicMassRange(5), lower, upper, 1e-8);
    }
    EXPECT_EQ(tof2(8, 2.5e11, 0, 0, 4, 10, 0.5)->usableMassRange(5, 0.1), Range(-4, g_infinity));
    expectNear(tof2(8, 2.5e11, -0.17, 0.002, 4, 10, 0.5)->monotonicMassRange(3000), 2496, g_infinity, 1e-8);
}

TEST(MonotonicMassRange, FailsWhereTheLawDoesNotRise) {
    const char* const notIncreasing = "runtime: Polynomial not strictly monotonously increasing at x0.";
    EXPECT_EQ(failureOf([] { tof(8, 2.5e11, -0.01, 10, 0.5)->monotonicMassRange(10001); }), notIncreasing);
    EXPECT_EQ(failureOf([] { tof(8, -2.5e11, 0, 10, 0.5)->monotonicMassRange(100); }), notIncreasing);
    EXPECT_EQ(failureOf([] { tof2(8, 2.5e11, 0, 0, -4, 10, 0.5)->monotonicMassRange(3.9); }),
              "runtime: Mass->time mapping not defined for specified value of 'm0'");
    EXPECT_EQ(failureOf([] { tof2(8, 2.5e11, -0.01, 1e-320, 4, 10, 0.5)->monotonicMassRange(100); }),
              "runtime: DGEEV failed.");
}

/// A cubic law of real size: masses up to 2,500 at 2,000 ns a root of mass.
const auto g_real = tof2(120.5, 250000.0, -1.5e-3, -2.5e-5, 0.75, 20000.0, 0.2);

TEST(Tof2Cubic, ExactSolutionInvertsTheLaw) {
    const Transformation::Tof2CubicRange range(*g_real, *g_real->GetFunctionalConstants());
    for (const long double mass : {50.0L, 524.265L, 2465.19L, 40000.0L}) {
        const long double t = std::sqrt(mass + 0.75L);
        const long double raw = ((t * -2.5e-5L + -1.5e-3L) * t + 2000.0L) * t + 120.5L;
        EXPECT_NEAR(range.exactRawToMass(static_cast<double>(raw), 0, 1e5) / static_cast<double>(mass), 1.0, 1e-14);
    }
    // No root inside: the bound whose raw value is nearer.
    EXPECT_EQ(range.exactRawToMass(20000.0, 1000, 2000), 1000);
    EXPECT_EQ(range.exactRawToMass(200000.0, 1000, 2000), 2000);
    // (t + 1) (t - 3) (t - 9): a root below 0 is none.
    const auto law = tof2(100, 1e12 / 225, -11, 1, 0, 0, 1);
    const Transformation::Tof2CubicRange threeRoots(*law, *law->GetFunctionalConstants());
    EXPECT_NEAR(threeRoots.exactRawToMass(73, 0.5, 20), 9, 1e-12);
    EXPECT_EQ(threeRoots.exactRawToMass(73, 0.5, 2), 0.5);
}

TEST(Tof2Cubic, RootsOfThePolynomial) {
    auto roots = Transformation::realRootsOfCubic(-6, 11, -6, 1);
    std::sort(roots.begin(), roots.end());
    ASSERT_EQ(roots.size(), 3U);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(roots[k], static_cast<double>(k + 1), 1e-12);
    EXPECT_EQ(Transformation::realRootsOfCubic(-4, 0, 1, 0).size(), 2U);
    EXPECT_TRUE(Transformation::realRootsOfCubic(4, 0, 1, 0).empty());
    EXPECT_EQ(failureOf([] { Transformation::realRootsOfCubic(-4, 1, 0, 0); }),
              "runtime: Failed to determine roots of polynomial: order < 2.");
    for (const double bad : {g_infinity, g_nan})
        EXPECT_EQ(failureOf([bad] { Transformation::realRootsOfCubic(bad, 1, 1, 1); }),
                  "runtime: Failed to determine roots of polynomial. Vigra returned error.");
}

TEST(Tof2Cubic, UsableRangeKeepsTheRoundTripWithinTheTolerance) {
    const Range monotonic = g_real->monotonicMassRange(500);
    const Range whole = g_real->usableMassRange(500, 0.0);
    EXPECT_NEAR(whole.first, -0.75 + 1.0, 1e-6);
    EXPECT_GT(whole.second, 1e6);
    EXPECT_LT(whole.second, monotonic.second);
    for (const double tolerance : {1e-3, 0.1}) {
        const Range usable = g_real->usableMassRange(500, tolerance);
        EXPECT_EQ(usable.first, whole.first);
        EXPECT_LT(usable.second, whole.second);
        const auto error = [](double mass) { return std::abs(g_real->RawToMass(g_real->MassToRaw(mass)) - mass); };
        EXPECT_NEAR(error(usable.second), tolerance, tolerance * 1e-3);
        EXPECT_LT(error(usable.second * 0.9), tolerance);
    }
    // The error is too great everywhere; a tolerance that nothing exceeds; a law without an upper end.
    const Range none = g_real->usableMassRange(500, -1.0);
    EXPECT_EQ(none.first, none.second);
    // Less than the unit of mass that is left free at both ends: the middle of -4 and -3.75, where the law has the time
    // at which its approximation turns.
    expectNear(tof2(8, 2.5e11, -1, 2, 4, 10, 0.5)->usableMassRange(-3.9, 0), -3.875, -3.875, 1e-12);
    EXPECT_EQ(g_real->usableMassRange(500, 1e300), whole);
    EXPECT_GT(tof2(120.5, 250000.0, 1e-3, 1e-6, 0, 2e4, 0.2)->usableMassRange(500, 0.0).second, 1e300);
    EXPECT_GT(tof2(120.5, 250000.0, 1e-3, 1e-6, 0, 2e4, 0.2)->usableMassRange(500, 0.1).second, 2000);
}

}  // namespace

}  // namespace kvan::calibration
