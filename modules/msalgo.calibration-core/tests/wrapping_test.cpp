#include "transformators.h"

#include <cmath>
#include <functional>
#include <thread>

#include <gtest/gtest.h>
#include <omp.h>

namespace kvan::calibration {

namespace {

/// Laws around a time-of-flight axis of m/z 1 to 2,000, as instruments have them.
std::vector<TransformatorPtr> wrappingLaws() {
    return {
        factory().createTransformatorKite(12000, 0.5, 0, 6e5, 0, 1500.6, 120, {0.25, 1e-4, 6e-7, 2e-13}, 1046.5, 12000,
                                          58000, 0, 100000),
        factory().createTransformatorPsd(
            tof(120, 6e5, 4e-3, 12000, 0.5),
            std::make_shared<Constants::CalibrationPolynomialPSDFAST>(
                Constants::CalibrationPolynomialPSDFAST::Numbers{.uRefFull = 20.25,
                                                                 .uSegment = 12.5,
                                                                 .calibrationMass = 1046.5,
                                                                 .parentMass = 1500.6,
                                                                 .minArg = 50,
                                                                 .maxArg = 2500,
                                                                 .spc = {0.02, -1e-3, 0.06, 2e-4},
                                                                 .ocp = {2.5, -0.01, 1e-4, 0}})),
    };
}

std::vector<TransformatorPtr> withKite2(std::vector<TransformatorPtr> laws) {
    const std::vector<CCalibPolynomial> parents = {{{12.5, 1280, 0.05, -2e-4}, 5, 50, 905.5},
                                                   {{11.5, 1279, 0.06, -1e-4}, 5, 50, 1570.7}};
    for (const CCalibPolynomial& global :
         {CCalibPolynomial{{0, 1}, 0, 0, 0}, CCalibPolynomial{{0.02, 1.0001, -1e-8}, 50, 2500, 0}})
        laws.push_back(factory().createTransformatorKite2(12000, 0.5, 0, 6e5, 0, parents, global, {12, 0.01}, 2, 1320.6,
                                                          104.5, 0, 100000));
    return laws;
}

/// `count` masses of the axis, up and down.
Doubles massesOf(std::size_t count) {
    Doubles masses(count);
    for (std::size_t k = 0; k < count; ++k)
        masses[k] = 1050 + 1049 * std::sin(static_cast<double>(k));
    return masses;
}

TEST(WrappingLaws, HoldTheirRoundTrips) {
    for (const auto& law : withKite2(wrappingLaws())) {
        for (const double mass : massesOf(2000))
            EXPECT_NEAR(law->RawToMass(law->MassToRaw(mass)), mass, 1e-9 * mass);
        for (std::int32_t index = 0; index < 90000; index += 37) {
            const double mass = law->IndexToMass(index);
            EXPECT_NEAR(law->MassToDIndex(mass), index, 1e-9 * (index + 24000));
            EXPECT_EQ(law->MassToIndex(mass), index);
        }
    }
}

TEST(WrappingLaws, BatchesHaveTheBitsOfTheSingleConversionForAnyNumberOfThreads) {
    for (const auto& law : withKite2(wrappingLaws()))
        for (const std::size_t count : {5UL, 150UL, 70001UL}) {
            const Doubles masses = massesOf(count);
            Doubles raws, expectedRaws, expectedMasses, expectedRange;
            for (const double mass : masses)
                expectedRaws.push_back(law->MassToRaw(mass));
            for (const double raw : expectedRaws)
                expectedMasses.push_back(law->RawToMass(raw));
            for (std::size_t k = 0; k < count; ++k)
                expectedRange.push_back(law->IndexToMass(static_cast<std::int32_t>(k)));
            for (const int threads : {1, 3}) {
                omp_set_num_threads(threads);
                law->MassesToRaws(masses, raws);
                EXPECT_TRUE(sameBits(raws, expectedRaws));
                law->RawsToMasses(raws);
                EXPECT_TRUE(sameBits(raws, expectedMasses));
                law->IndexRangeToMasses(0, static_cast<std::int32_t>(count) - 1, raws);
                EXPECT_TRUE(sameBits(raws, expectedRange));
            }
            omp_set_num_threads(1);
        }
}

TEST(WrappingLaws, ManyThreadsMayConvertAtOnceAndGetTheSameBits) {
    for (const auto& law : withKite2(wrappingLaws())) {
        const Doubles masses = massesOf(3000);
        const Doubles backward(masses.rbegin(), masses.rend());
        Doubles results[4];
        std::vector<std::thread> threads;
        for (int k = 0; k < 4; ++k)
            threads.emplace_back([&, k] {
                for (const double mass : k % 2 == 0 ? masses : backward)
                    results[k].push_back(law->RawToMass(law->MassToRaw(mass)));
            });
        for (std::thread& thread : threads)
            thread.join();
        std::reverse(results[1].begin(), results[1].end());
        EXPECT_TRUE(sameBits(results[0], results[1]));
        EXPECT_TRUE(sameBits(results[0], results[2]));
    }
}

}  // namespace

}  // namespace kvan::calibration
