#include "transformators.h"

namespace kvan::calibration {

namespace {

/// Worked out by hand; every number is exact in binary, so the results must be too. c1 = 2.5e11 gives C1 = 4.
const struct {
    const char* name;
    TransformatorPtr transformator;
    double index, raw, mass;
    bool inverts = true;  // whether MassToRaw gives the same branch of the law
} g_points[] = {
    {"TOF linear", tof(8, 2.5e11, 0, 10, 0.5), 20, 20, 36},
    {"TOF linear, mirrored before C0", tof(8, 2.5e11, 0, 10, 0.5), -28, -4, -36},
    {"TOF linear at C0", tof(8, 2.5e11, 0, 10, 0.5), -4, 8, 0},
    {"TOF linear, time base negative", tof(8, 2.5e11, 0, 10, -0.5), -20, 20, 36},
    {"TOF quadratic", tof(8, 2.5e11, 0.5, 10, 0.5), 28, 24, 16},
    {"TOF quadratic, C2 negative", tof(8, 2.5e11, -0.125, 10, 0.5), 8, 14, 16},
    {"TOF quadratic at C0", tof(8, 2.5e11, 0.5, 10, 0.5), -4, 8, 0},
    {"TOF quadratic, mirrored", tof(8, 2.5e11, 0.5, 10, 0.5), -36, -8, -16, false},
    {"TOF quadratic, C1 zero", tof(8, g_infinity, 0.25, 10, 0.5), 28, 24, 64},
    {"TOF quadratic, C1 negative", tof(8, -2.5e11, 0.5, 0, 1), 12, 12, -4, false},
    {"TOF2 linear", tof2(8, 2.5e11, 0, 0, 4, 10, 0.5), 20, 20, 32},
    {"TOF2 linear, mirrored before C0", tof2(8, 2.5e11, 0, 0, 4, 10, 0.5), -28, -4, -40},
    {"TOF2 quadratic", tof2(8, 2.5e11, 0.5, 0, 4, 10, 0.5), 28, 24, 12},
    {"TOF2 cubic at C0", tof2(8, 2.5e11, 0.5, 0.25, 4, 10, 0.5), -4, 8, -4},
    {"FTMS mode 0", ftms(0, -24, 1024, 240, 160, 5), 3, 280, 4},
    {"FTMS mode 4", ftms(4, -24, 1024, 240, 160, 4), 3, 280, 4},
    {"FTMS mode 1", ftmsQuadratic(1, 64, 24, 1024, 244, 160, 5), 3, 284, 4},
    {"FTMS mode 5, alpha negative", ftmsQuadratic(5, -64, 24, 1024, 236, 160, 4), 3, 276, 4},
    {"FTMS mode 1, alpha zero", ftmsQuadratic(1, 0, 24, 1024, 240, 160, 5), 3, 280, 4},
    {"Paladin linear", paladin(1, 2, 0, 24, 8), 16, 5, 11},
    {"Paladin quadratic", paladin(1, 2, 3, 24, 8), -8, 2, 17},
    {"Paladin quadratic, C1 negative", paladin(1, -2, 3, 24, 8), -8, 2, 9, false},
    {"Linear: mass = index * c1 + c0", linear(-3, 0.25), 20, 20, 2},
};

TEST(Law, GivesTheValuesWorkedOutByHand) {
    for (const auto& [name, law, place, raw, mass, inverts] : g_points) {
        SCOPED_TRACE(name);
        const auto index = static_cast<std::int32_t>(place);
        EXPECT_EQ(law->IndexToRaw(index), raw);
        EXPECT_EQ(law->RawToDIndex(raw), place);
        EXPECT_EQ(law->RawToMass(raw), mass);
        EXPECT_FALSE(mass == 0.0 && std::signbit(law->RawToMass(raw)));
        EXPECT_EQ(law->IndexToMass(index), mass);
        if (!inverts)
            continue;
        EXPECT_EQ(law->MassToRaw(mass), raw);
        EXPECT_EQ(law->MassToDIndex(mass), place);
        EXPECT_EQ(law->MassToIndex(mass), index < 0 ? index + 1 : index);
    }
}

/// The forward laws with 64 bits of mantissa, at the ends and in the middle of a real axis. t is the root of the
/// shifted mass.
TEST(Law, AgreesWithHigherPrecisionOnARealAxis) {
    const auto rounded = [](long double value) { return static_cast<double>(value); };
    const std::tuple<long double, long double, double> tails[] = {
        {0.0L, 0.0L, 2e-15}, {0.0L, 0.75L, 2e-15}, {-2.5e-5L, 0.75L, 1e-12}};
    for (const long double c2 : {0.0L, -1.5e-3L, 4e-3L})
        for (const auto& [c3, shift, tolerance] : tails) {
            const auto law = shift == 0.0L ? tof(120.5, 250000.0, rounded(c2), 20000.0, 0.2)
                                           : tof2(120.5, 250000.0, rounded(c2), rounded(c3), 0.75, 20000.0, 0.2);
            for (const long double mass : {99.0L, 524.265L, 1221.990637L, 2465.19L}) {
                const long double t = std::sqrt(mass + shift);
                const long double raw = ((t * c3 + c2) * t + 2000.0L) * t + 120.5L;
                const long double index = (raw - 20000.0L) / 0.2L;
                EXPECT_NEAR(law->MassToRaw(rounded(mass)), rounded(raw), 3e-11);
                EXPECT_NEAR(law->MassToDIndex(rounded(mass)), rounded(index), 1.5e-10);
                EXPECT_NEAR(law->DIndexToMass(rounded(index)) / rounded(mass), 1.0, tolerance);
            }
        }
    const auto cyclotron = ftmsQuadratic(5, -3.2e7, -1.5, 1.07e8, 4e4, 1e6, 1 << 20);
    const auto trap = paladin(0.125, 1.0005, 2.5e-7, 5000, 100);
    for (const long double mass : {107.0L, 400.25L, 1999.9L}) {
        const long double raw = -3.2e7L / mass / mass + 1.07e8L / mass - 1.5L;
        EXPECT_NEAR(cyclotron->MassToRaw(rounded(mass)), rounded(raw), 1e-9);
        EXPECT_NEAR(cyclotron->RawToMass(rounded(raw)) / rounded(mass), 1.0, 2e-15);
        EXPECT_NEAR(trap->MassToRaw(rounded(mass * mass * 2.5e-7L + mass * 1.0005L + 0.125L)), rounded(mass), 1e-12);
    }
}

/// Steps written down one by one, with nothing folded or reused.
double cubicRawToMass(double raw, double c0, double C1, double c2, double c3) {
    const auto root = [](double x) { return 0.0 > x ? -std::sqrt(-x) : std::sqrt(x); };
    const auto square = [](double x) { return 0.0 > x ? -(x * x) : x * x; };
    const double b = root(C1);
    const auto f = [&](double mass) {
        const double t = root(mass);
        return ((t * c3 + c2) * t + b) * t + c0;
    };
    const double disc = c0 > raw ? C1 - (raw - c0) * 4.0 * c2 : C1 - (c0 - raw) * 4.0 * c2;
    const double q = (std::sqrt(disc) * (C1 < 0.0 ? -1.0 : 1.0) + b) * -0.5;
    double s = (c0 - raw) / q;
    if (!(s > 0.0) || c3 == 0.0)
        return square(s);
    s = s * raw / std::max(f(s * s), 20.0);
    const double slope = (s * 3.0 * c3 + 2 * c2) * s + b;
    s = s - (f(square(s)) - raw) / slope;
    s = s - (f(square(s)) - raw) / slope;
    return square(s);
}

TEST(Law, CubicTakesTheStepsAsTheyAre) {
    Doubles raws = {8.0, -100.0, 0.0, 20.0, 1e-5, 1e100, 1e300, g_infinity, -g_infinity};
    for (int k = 0; k < 400; ++k)
        raws.push_back(k * 571.3 - 3000.0);
    for (const double c2 : {0.004, 1e150})
        for (const double c3 : {-2.5e-5, 0.0, 0.03}) {
            const auto law = tof2(5.5, 250000.0, c2, c3, 0, 0, 1);  // 8.0 lies below the floor of the ratio
            Doubles masses;
            law->RawsToMasses(raws, masses);
            for (std::size_t k = 0; k < raws.size(); ++k) {
                const double expected = cubicRawToMass(raws[k], 5.5, 4e6, c2, c3);
                EXPECT_TRUE(masses[k] == expected || (std::isnan(masses[k]) && std::isnan(expected)))
                    << raws[k] << " " << masses[k] << " " << expected;
            }
        }
}

TEST(Law, TiltedQuadraticContinuesBeyondItsVertex) {
    const std::tuple<const char*, double, double, double, double> cases[] = {
        {"beyond the vertex", -64, 1024, 8216, 0.0625},
        {"no linear term", 64, 0, 280, 0.5},
        {"no linear term, beyond", 64, 0, -232, -0.5},
        {"falling, beyond the vertex", 64, -1024, -20456, -0.125},
        {"falling", 64, -1024, 24, 0.0625},
    };
    for (const auto& [name, alpha, freqHigh, raw, mass] : cases)
        EXPECT_EQ(ftmsQuadratic(1, alpha, 24, freqHigh, 0, 1, 2)->RawToMass(raw), mass) << name;
    EXPECT_EQ(failureOf([] { ftmsQuadratic(1, 0, 24, -1, 0, 1, 2)->RawToMass(3); }),
              "runtime: Case b*x + c with negative slope.");
    EXPECT_EQ(failureOf([] { ftmsQuadratic(1, 0, 24, 0, 0, 1, 2)->RawToMass(3); }), "runtime: Polynomial is constant.");
}

TEST(Law, FtmsIndicesStayInsideTheArray) {
    const auto law = ftms(0, -24, 1024, 240, 160, 5);
    EXPECT_EQ(law->IndexToMass(-5), law->IndexToMass(0));
    EXPECT_EQ(law->IndexToMass(5), law->IndexToMass(4));
    EXPECT_EQ(law->DIndexToRaw(4.5), law->IndexToRaw(4) - 20);  // below the size: not the last point yet
    EXPECT_EQ(law->RawToIndex(1e6), 0);
    EXPECT_EQ(law->MassToIndex(0.0), 0);
    EXPECT_EQ(law->MassToRaw(0.0), g_infinity);
    EXPECT_EQ(law->RawToDIndex(-1e6), 4);
    EXPECT_EQ(ftms(0, 0, 1, 0, 1, 0)->RawToDIndex(-7), 0);  // no point at all
}

TEST(Law, FtmsAxisFollowsTheModeOfTheLaw) {
    const auto law = ftms(4, 0, 1, 240, 160, 5);
    EXPECT_EQ(law->IndexToRaw(1), 400 - 32);
    law->SetFunctionalConstants(std::make_shared<CalibrationConstantsFunctionalFTMS04>(0, 1, 0));
    EXPECT_EQ(law->IndexToRaw(1), 400 - 40);
    law->SetPhysicalConstants(std::make_shared<CalibrationConstantsPhysicalFTMS>(240, 160, 5, 5, 1));
    EXPECT_EQ(law->IndexToRaw(1), 400 - 40);
    law->SetFunctionalConstants(std::make_shared<CalibrationConstantsFunctionalFTMS04>(0, 1, 4, 1));
    EXPECT_EQ(law->IndexToRaw(1), 160 - 32);  // counted from 0.0

    law->SetIndexOffset(1);
    law->AssimilateIndexOffset();
    EXPECT_EQ(law->IndexToRaw(1), 160 - 64);
    const auto axis = std::dynamic_pointer_cast<CalibrationConstantsPhysicalFTMS>(law->GetPhysicalConstants());
    const auto function = law->GetFunctionalConstants();
    EXPECT_EQ(axis->GetFreqLow(), -32);
    EXPECT_EQ(axis->GetFTMSRawMode(), 0);
    EXPECT_EQ(dynamic_cast<CalibrationConstantsFunctionalFTMS04&>(*function).GetFTMSRawMode(), 0);
    axis->SetCalibMode(2);
    EXPECT_EQ(axis->GetA0(), 0.0);
    EXPECT_EQ(axis->GetA1(), 1.0);
    axis->SetCalibMode(7);
    EXPECT_EQ(failureOf([&] { axis->GetA1(); }),
              "argument: CalibrationConstantsPhysicalFTMS::GetA1(): invalid calibration constants: icr mode unknown. "
              "Expected 0..6, but got 7");
    EXPECT_EQ(failureOf([&] { law->SetCalibMode(1); }),
              "argument: CalibrationConstantsFunctionalFTMS04::SetCalibMode: Invalid FTMS mode: 0 or 4 are possible");
    EXPECT_EQ(law->GetCalibMode(), 4);
}

TEST(Law, PassesInfinitiesOn) {
    EXPECT_EQ(paladin(1, 0, 0, 0, 1)->MassToRaw(5), g_infinity);
    EXPECT_EQ(tof(1, 0, 0, 0, 1)->RawToMass(5), 0.0);  // C1 is infinite
    EXPECT_EQ(tof(1, 1e12, 0, 0, 0)->RawToDIndex(5), g_infinity);
}

TEST(Law, RoundsAnIndexByHalfAndTruncation) {
    const auto identity = linear(0, 1);
    const Doubles masses = {-0.7, -1.6,       2.49,        2.5,  g_nan,        g_infinity,
                            3e9,  0x7FFFFFFF, -g_infinity, -3e9, -2147483648.4};
    const Indices expected = {0, -1, 2, 3, 0, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN, INT32_MIN + 1};
    for (std::size_t k = 0; k < masses.size(); ++k) {
        EXPECT_EQ(identity->MassToIndex(masses[k]), expected[k]) << masses[k];
        EXPECT_EQ(identity->RawToIndex(masses[k]), expected[k]) << masses[k];
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

TEST(Law, AdaptRawStartKeepsToTheGrid) {
    // The new start, and where index 0 then lies.
    const std::tuple<const char*, TransformatorPtr, double, double> cases[] = {
        {"between two points", tof(0, 1e12, 0, 10, 0.5), 12.7, 12.5},
        {"on a point", tof(0, 1e12, 0, 10, 0.5), 13, 13},
        {"a rounding above a point", tof(0, 1e12, 0, 10, 0.5), 13 - 1e-9, 13 - 0.5},
        {"before the start", tof(0, 1e12, 0, 10, 0.5), 9.2, 9},
        {"ion trap", paladin(0, 1, 0, 24, 8), 5, 5},
        {"line", linear(0, 1), 7.25, 7.25},
        {"line, negative", linear(0, 1), -1, 0},
    };
    for (const auto& [name, law, start, raw] : cases) {
        law->AdaptRawStart(start);
        EXPECT_EQ(law->IndexToRaw(0), raw) << name;
    }
}

}  // namespace

}  // namespace kvan::calibration
