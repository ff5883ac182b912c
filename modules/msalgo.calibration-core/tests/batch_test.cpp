#include "transformators.h"

#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>
#include <omp.h>

namespace kvan::calibration {

namespace {

const char* const g_complex =
    "logic_error: complex valued solution in computation due to invalid calibration constants/value range";
const char* const g_failed = "runtime_error: Transformation failed, most likely due to bad calibration constants.";

using T = ICalibrationTransformator;

/// Law with a real mass from raw -24 to 40 only: disc = 4 - |raw - 8| / 8.
TransformatorPtr endsAtRaw40(double timeBase = 1) {
    return tof(8, 2.5e11, -0.03125, 0, timeBase);
}

/// Laws that fail nowhere, one of each family, with constants of either sign.
std::vector<TransformatorPtr> lawsWithoutFailure() {
    std::vector<TransformatorPtr> laws = {tof(8, 2.5e11, 0, 10, 0.5),
                                          tof(-8, 2.5e11, 0.5, -10, 0.25),
                                          tof(120.5, 250000, 4e-3, 20000, 0.2),
                                          paladin(1, -2, 0, 24, 8),
                                          paladin(1, 2, 3, -24, 8),
                                          linear(-3, -0.25),
                                          tof2(8, 2.5e11, 0, 0, -4, 1, 1),
                                          tof2(-8, 2.5e11, 0.5, 0, 4, 1, 1),
                                          tof2(120.5, 250000, 4e-3, -2e-5, 0.5, 2e4, 0.2),
                                          ftms(0, -24, 1024, 240, 1e4, 99),
                                          ftmsQuadratic(5, -64, 24, 1024, 240, 1e4, 99),
                                          ftmsQuadratic(1, 64, 24, -1024, 240, 1e4, 99)};
    for (const auto& law : laws)
        law->SetIndexOffset(0.75);
    return laws;
}

/// `count` values, some of which test signs, zeros, NaN and the ends of the numbers.
Doubles awkwardValues(std::size_t count) {
    using limits = std::numeric_limits<double>;
    const double special[] = {0.0,
                              -0.0,
                              8.0,
                              -8.0,
                              120.5,
                              limits::quiet_NaN(),
                              -limits::quiet_NaN(),
                              limits::infinity(),
                              -limits::infinity(),
                              limits::denorm_min(),
                              -limits::denorm_min(),
                              limits::max(),
                              1e-200,
                              -1e-200,
                              -1.0 / 3,
                              2.5e9};
    Doubles values(count);
    for (std::size_t k = 0; k < count; ++k)
        values[k] = k % 3 == 0 ? special[k / 3 % std::size(special)] : std::sin(static_cast<double>(k)) * 4e4;
    return values;
}

struct DoubleConversion {
    const char* name;
    void (T::*inPlace)(Doubles&) const;
    void (T::*to)(const Doubles&, Doubles&) const;
    double (T::*single)(double) const;
};

const DoubleConversion g_conversions[] = {
    {"MassToRaw", &T::MassesToRaws, &T::MassesToRaws, &T::MassToRaw},
    {"RawToMass", &T::RawsToMasses, &T::RawsToMasses, &T::RawToMass},
    {"MassToDIndex", &T::MassesToDIndices, &T::MassesToDIndices, &T::MassToDIndex},
    {"DIndexToMass", &T::DIndicesToMasses, &T::DIndicesToMasses, &T::DIndexToMass},
    {"DIndexToRaw", &T::DIndicesToRaws, &T::DIndicesToRaws, &T::DIndexToRaw},
    {"RawToDIndex", &T::RawsToDIndices, &T::RawsToDIndices, &T::RawToDIndex},
};

TEST(Batch, HasTheBitsOfTheSingleConversion) {
    for (const std::size_t count : {0UL, 1UL, 99UL, 100UL, 5003UL})
        for (const auto& law : lawsWithoutFailure()) {
            const Doubles source = awkwardValues(count);
            for (const DoubleConversion& conversion : g_conversions) {
                SCOPED_TRACE(conversion.name + std::to_string(count));
                Doubles expected;
                for (const double value : source)
                    expected.push_back(((*law).*conversion.single)(value));
                Doubles converted(count / 2, 7.0);
                ((*law).*conversion.to)(source, converted);
                EXPECT_TRUE(sameBits(converted, expected));
                converted = source;
                ((*law).*conversion.to)(converted, converted);
                EXPECT_TRUE(sameBits(converted, expected));
                converted = source;
                ((*law).*conversion.inPlace)(converted);
                EXPECT_TRUE(sameBits(converted, expected));
            }
        }
}

TEST(Batch, WholeIndicesHaveTheBitsOfTheSingleConversion) {
    for (const std::size_t count : {1UL, 7UL, 8UL, 100UL, 5003UL})
        for (const auto& law : lawsWithoutFailure()) {
            const auto last = static_cast<std::int32_t>(count) - 4;
            Indices indices, fromMasses, fromRaws, expectedFromMasses, expectedFromRaws;
            Doubles masses, raws, expectedMasses, expectedRaws, range;
            for (std::int32_t index = -3; index <= last; ++index) {
                indices.push_back(index);
                expectedMasses.push_back(law->IndexToMass(index));
                expectedRaws.push_back(law->IndexToRaw(index));
            }
            law->IndicesToMasses(indices, masses);
            law->IndicesToRaws(indices, raws);
            law->IndexRangeToMasses(-3, last, range);
            EXPECT_TRUE(sameBits(masses, expectedMasses) && sameBits(raws, expectedRaws));
            EXPECT_TRUE(sameBits(range, expectedMasses));
            const Doubles values = awkwardValues(count);
            for (const double value : values) {
                expectedFromMasses.push_back(law->MassToIndex(value));
                expectedFromRaws.push_back(law->RawToIndex(value));
            }
            law->MassesToIndices(values, fromMasses);
            law->RawsToIndices(values, fromRaws);
            EXPECT_EQ(fromMasses, expectedFromMasses);
            EXPECT_EQ(fromRaws, expectedFromRaws);
        }
}

TEST(Batch, BelowTheThresholdTheLawsOwnFailureReachesTheCaller) {
    const auto law = endsAtRaw40();
    for (const std::size_t count : {99UL, 100UL})
        for (const int threads : {1, 2}) {
            omp_set_num_threads(threads);
            Doubles raws(count, 10.0);
            raws[60] = 41.0;
            EXPECT_EQ(failureOf([&] { law->RawsToMasses(raws); }), count < 100 ? g_complex : g_failed);
            if (count < 100) {
                EXPECT_EQ(raws[59], law->RawToMass(10.0));
                EXPECT_EQ(raws[60], 41.0);
                EXPECT_EQ(raws[61], 10.0);
                raws[60] = 41.0;
                Doubles masses(count, 7.0);
                EXPECT_EQ(failureOf([&] { law->RawsToMasses(Doubles(1, 41.0), masses); }), g_complex);
                EXPECT_EQ(masses, Doubles{0.0});
            }
        }
    omp_set_num_threads(1);
    Doubles nothing;
    law->RawsToMasses(nothing);
}

TEST(Batch, RangesHaveAThresholdOfTheirOwn) {
    const auto law = endsAtRaw40();
    Doubles masses{1, 2, 3};
    EXPECT_EQ(failureOf([&] { law->IndexRangeToMasses(35, 41, masses); }), g_complex);
    EXPECT_EQ(masses.size(), 6U);
    EXPECT_EQ(masses[5], law->IndexToMass(40));
    EXPECT_EQ(failureOf([&] { law->IndexRangeToMasses(34, 41, masses); }), g_failed);
    law->IndexRangeToMasses(5, 5, masses);
    EXPECT_EQ(masses, Doubles{law->IndexToMass(5)});
    EXPECT_EQ(failureOf([&] { law->IndexRangeToMasses(5, 4, masses); }),
              "invalid_argument: Kvan::CCO::Functors::RangeTransformation(TTransformationFunctor transFunctor, "
              "boost::int32_t first, boost::int32_t last, TDest & dest): invalid transformation: range invalid: last < "
              "first with last = 4 and first = 5");
}

#ifndef __SANITIZE_THREAD__  // libgomp is not instrumented: each barrier of a team would look like a race

TEST(Batch, InsideAParallelRegionNothingForksAndTheLawsFailurePasses) {
    const auto law = endsAtRaw40(0.0625);
    std::string failures[4];
    std::size_t sizes[4] = {};
#pragma omp parallel for num_threads(2) schedule(static, 1)
    for (int k = 0; k < 4; ++k) {
        Doubles masses;
        failures[k] = failureOf([&] { law->IndexRangeToMasses(-384, 641, masses); });
        sizes[k] = masses.size();
    }
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(failures[k], g_complex);
        EXPECT_EQ(sizes[k], 1025U);
    }
}

TEST(Batch, AnyNumberOfThreadsGivesTheSameBits) {
    constexpr std::int32_t points = 1'500'001;  // enough work for a team
    for (const auto& law : lawsWithoutFailure()) {
        Doubles expected;
        for (const int threads : {1, 2, 7}) {
            omp_set_num_threads(threads);
            Doubles masses;
            law->IndexRangeToMasses(0, points - 1, masses);
            if (threads == 1)
                expected = masses;
            EXPECT_TRUE(sameBits(masses, expected)) << threads;
        }
    }
    omp_set_num_threads(7);
    Doubles masses;
    EXPECT_EQ(failureOf([&] { endsAtRaw40(0x1p-15)->IndexRangeToMasses(0, 40 * 32768 + 1, masses); }), g_failed);
    omp_set_num_threads(1);
}

#endif

}  // namespace

}  // namespace kvan::calibration
