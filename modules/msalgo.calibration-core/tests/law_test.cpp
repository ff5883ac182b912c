#include "transformators.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace kvan::calibration {

namespace {

constexpr double g_infinity = std::numeric_limits<double>::infinity();
constexpr double g_nan = std::numeric_limits<double>::quiet_NaN();

struct PointCase {
    const char* name;
    TransformatorPtr transformator;
    double index, raw, mass;
    bool inverts = true;  // whether MassToRaw gives the same branch of the law
};

/// Worked out by hand; every number is exact in binary, so the results must be too. c1 = 2.5e11 gives C1 = 4.
const PointCase g_points[] = {
    {"TOF linear", tof(8, 2.5e11, 0, 10, 0.5), 20, 20, 36},
    {"TOF linear, mirrored before C0", tof(8, 2.5e11, 0, 10, 0.5), -28, -4, -36},
    {"TOF linear at C0", tof(8, 2.5e11, 0, 10, 0.5), -4, 8, 0},
    {"TOF linear, time base negative", tof(8, 2.5e11, 0, 10, -0.5), -20, 20, 36},
    {"TOF quadratic", tof(8, 2.5e11, 0.5, 10, 0.5), 28, 24, 16},
    {"TOF quadratic, C2 negative", tof(8, 2.5e11, -0.125, 10, 0.5), 8, 14, 16},
    {"TOF quadratic at C0", tof(8, 2.5e11, 0.5, 10, 0.5), -4, 8, 0},
    {"TOF quadratic, mirrored", tof(8, 2.5e11, 0.5, 10, 0.5), -36, -8, -16, false},
    {"TOF quadratic, C1 negative", tof(8, -2.5e11, 0.5, 0, 1), 12, 12, -4, false},
    {"Paladin linear", paladin(1, 2, 0, 24, 8), 16, 5, 11},
    {"Paladin quadratic", paladin(1, 2, 3, 24, 8), -8, 2, 17},
    {"Paladin quadratic, C1 negative", paladin(1, -2, 3, 24, 8), -8, 2, 9, false},
    {"Linear: mass = index * c1 + c0", linear(-3, 0.25), 20, 20, 2},
};

TEST(Law, GivesTheValuesWorkedOutByHand) {
    for (const PointCase& point : g_points) {
        SCOPED_TRACE(point.name);
        const auto index = static_cast<std::int32_t>(point.index);
        EXPECT_EQ(point.transformator->IndexToRaw(index), point.raw);
        EXPECT_EQ(point.transformator->RawToDIndex(point.raw), point.index);
        EXPECT_EQ(point.transformator->RawToMass(point.raw), point.mass);
        EXPECT_FALSE(point.mass == 0.0 && std::signbit(point.transformator->RawToMass(point.raw)));
        EXPECT_EQ(point.transformator->IndexToMass(index), point.mass);
        if (!point.inverts)
            continue;
        EXPECT_EQ(point.transformator->MassToRaw(point.mass), point.raw);
        EXPECT_EQ(point.transformator->MassToDIndex(point.mass), point.index);
        EXPECT_EQ(point.transformator->MassToIndex(point.mass), index < 0 ? index + 1 : index);
    }
}

/// The forward laws with 64 bits of mantissa, at the ends and in the middle of a real axis.
TEST(Law, AgreesWithHigherPrecisionOnARealAxis) {
    const long double c0 = 120.5L, c1 = 250000.0L, delay = 20000.0L, base = 0.2L;
    for (const long double c2 : {0.0L, -1.5e-3L, 4e-3L}) {
        const auto transformator = tof(120.5, 250000.0, static_cast<double>(c2), 20000.0, 0.2);
        for (const long double mass : {99.0L, 524.265L, 1221.990637L, 2465.19L}) {
            const long double raw = mass * c2 + std::sqrt(mass * (1e12L / c1)) + c0;
            const long double index = (raw - delay) / base;
            EXPECT_NEAR(transformator->MassToRaw(static_cast<double>(mass)), static_cast<double>(raw), 3e-11);
            EXPECT_NEAR(transformator->MassToDIndex(static_cast<double>(mass)), static_cast<double>(index), 1.5e-10);
            EXPECT_NEAR(transformator->DIndexToMass(static_cast<double>(index)) / static_cast<double>(mass), 1.0,
                        2e-15);
        }
    }
    const auto trap = paladin(0.125, 1.0005, 2.5e-7, 5000, 100);
    for (const long double raw : {50.0L, 1025.3L, 3000.0L}) {
        const long double mass = raw * raw * 2.5e-7L + raw * 1.0005L + 0.125L;
        EXPECT_NEAR(trap->RawToMass(static_cast<double>(raw)), static_cast<double>(mass), 1e-12);
        EXPECT_NEAR(trap->MassToRaw(static_cast<double>(mass)), static_cast<double>(raw), 1e-12);
    }
}

TEST(Law, PassesInfinitiesOn) {
    EXPECT_EQ(paladin(1, 0, 0, 0, 1)->MassToRaw(5), g_infinity);
    EXPECT_EQ(tof(1, 0, 0, 0, 1)->RawToMass(5), 0.0);  // C1 is infinite
    EXPECT_EQ(tof(1, 1e12, 0, 0, 0)->RawToDIndex(5), g_infinity);
}

TEST(Law, RoundsAnIndexByHalfAndTruncation) {
    const auto identity = linear(0, 1);
    const struct {
        double mass;
        std::int32_t index;
    } cases[] = {{-0.7, 0},
                 {-1.6, -1},
                 {2.49, 2},
                 {2.5, 3},
                 {2147483647.0, INT32_MAX},
                 {3e9, INT32_MAX},
                 {-3e9, INT32_MIN},
                 {g_infinity, INT32_MAX},
                 {-g_infinity, INT32_MIN},
                 {g_nan, 0},
                 {-2147483648.4, INT32_MIN + 1}};
    Doubles masses;
    Indices expected;
    for (const auto& sample : cases) {
        EXPECT_EQ(identity->MassToIndex(sample.mass), sample.index) << sample.mass;
        EXPECT_EQ(identity->RawToIndex(sample.mass), sample.index) << sample.mass;
        masses.push_back(sample.mass);
        expected.push_back(sample.index);
    }
    Indices indices;
    identity->MassesToIndices(masses, indices);
    EXPECT_EQ(indices, expected);
}

TEST(Law, IndexOffsetShiftsTheSamplesAndCanBeAssimilated) {
    for (const auto& transformator : {tof(8, 2.5e11, 0.5, 10, 0.5), paladin(1, 2, 3, 24, 8), linear(1, 2)}) {
        transformator->SetIndexOffset(4);
        const double mass = transformator->IndexToMass(8);
        EXPECT_EQ(transformator->MassToDIndex(mass), 8);
        transformator->AssimilateIndexOffset();
        EXPECT_EQ(transformator->GetIndexOffset(), 0.0);
        EXPECT_EQ(transformator->IndexToMass(8), mass);
        EXPECT_EQ(transformator->MassToDIndex(mass), 8);
    }
}

TEST(Law, WindowsSlideAtTheStartOfTheAxis) {
    const auto tofLinear = tof(0, 1e12, 0, 0, 1);  // mass = index * index
    EXPECT_EQ(tofLinear->IndexWidthToMassWidth(0, 4), 16);
    EXPECT_EQ(tofLinear->IndexWidthToMassWidth(100, 4), 12.0 * 12 - 8 * 8);
    EXPECT_EQ(tofLinear->MassWidthToIndexWidth(1, 4), 2);
    EXPECT_EQ(tofLinear->MassWidthToIndexWidth(104, 80), 12 - 8);
}

struct AxisCase {
    const char* name;
    TransformatorPtr transformator;
    double start, raw;  // the new start, and where index 0 then lies
};

TEST(Law, AdaptRawStartKeepsToTheGrid) {
    const AxisCase cases[] = {
        {"between two points", tof(0, 1e12, 0, 10, 0.5), 12.7, 12.5},
        {"on a point", tof(0, 1e12, 0, 10, 0.5), 13, 13},
        {"a rounding above a point", tof(0, 1e12, 0, 10, 0.5), 13 - 1e-9, 13 - 0.5},
        {"before the start", tof(0, 1e12, 0, 10, 0.5), 9.2, 9},
        {"ion trap", paladin(0, 1, 0, 24, 8), 5, 5},
        {"line", linear(0, 1), 7.25, 7.25},
        {"line, negative", linear(0, 1), -1, 0},
    };
    for (const AxisCase& sample : cases) {
        sample.transformator->AdaptRawStart(sample.start);
        EXPECT_EQ(sample.transformator->IndexToRaw(0), sample.raw) << sample.name;
    }
}

}  // namespace

}  // namespace kvan::calibration
