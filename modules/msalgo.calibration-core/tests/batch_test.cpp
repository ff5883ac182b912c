#include "transformators.h"

#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>

#include <thread>

#include <omp.h>

namespace kvan::calibration {

namespace {

const char* const g_complex =
    "logic: complex valued solution in computation due to invalid calibration constants/value range";

using T = ICalibrationTransformator;

/// Law with a real mass from raw -24 to 40 only: disc = 4 - |raw - 8| / 8.
TransformatorPtr endsAtRaw40(double timeBase = 1) {
    return tof(8, 2.5e11, -0.03125, 0, timeBase);
}

/// Laws that fail nowhere, one of each family, with constants of either sign.
std::vector<TransformatorPtr> lawsWithoutFailure() {
    std::vector<TransformatorPtr> laws(
        {tof(8, 2.5e11, 0, 10, 0.5), tof(-8, 2.5e11, 0.5, -10, 0.25), tof(120.5, 250000, 4e-3, 20000, 0.2),
         paladin(1, -2, 0, 24, 8), paladin(1, 2, 3, -24, 8), linear(-3, -0.25), tof2(8, 2.5e11, 0, 0, -4, 1, 1),
         tof2(-8, 2.5e11, 0.5, 0, 4, 1, 1), tof2(120.5, 250000, 4e-3, -2e-5, 0.5, 2e4, 0.2),
         ftms(0, -24, 1024, 240, 1e4, 99), ftmsQuadratic(5, -64, 24, 1024, 240, 1e4, 99),
         ftmsQuadratic(1, 64, 24, -1024, 240, 1e4, 99)});
    for (const auto& law : laws)
        law->SetIndexOffset(0.75);
    return laws;
}

/// Laws around a time-of-flight axis of m/z 1 to 2,000, as instruments have them.
std::vector<TransformatorPtr> wrappingLaws() {
    const auto inner = tof(120.5, 250000, 4e-3, 20000, 0.2);
    auto psd = psdNumbers(50, 2500);
    psd.spc = {0.02, -1e-3, 0.06, 2e-4};
    psd.ocp = {2.5, -0.01, 1e-4, 0};
    std::vector<TransformatorPtr> laws = {
        corrected(inner, {1e-3, 1 - 4e-6, 5e-9, -1e-12}, 100, 3000), corrected(inner, {0.5, 1, 1e-4}, 0, 3000),
        factory().createTransformatorKite(12000, 0.5, 0, 6e5, 0, 1500.6, 120, {0.25, 1e-4, 6e-7, 2e-13}, 1046.5, 12000,
                                          58000, 0, 100000),
        factory().createTransformatorPsd(tof(120, 6e5, 4e-3, 12000, 0.5),
                                         std::make_shared<CalibrationPolynomialPSDFAST>(psd))};
    const std::vector<CCalibPolynomial> parents = {{{12.5, 1280, 0.05, -2e-4}, 5, 50, 905.5},
                                                   {{11.5, 1279, 0.06, -1e-4}, 5, 50, 1570.7}};
    for (const CCalibPolynomial& global :
         {CCalibPolynomial{{0, 1}, 0, 0, 0}, CCalibPolynomial{{0.02, 1.0001, -1e-8}, 50, 2500, 0}})
        laws.push_back(factory().createTransformatorKite2(12000, 0.5, 0, 6e5, 0, parents, global, {12, 0.01}, 2, 1320.6,
                                                          104.5, 0, 100000));
    return laws;
}

/// `count` values, some of which test signs, zeros, NaN and the ends of the numbers.
Doubles awkwardValues(std::size_t count) {
    using limits = std::numeric_limits<double>;
    const Doubles special({0.0, -0.0, 8.0, -8.0, 120.5, g_nan, -g_nan, g_infinity, -g_infinity, limits::denorm_min(),
                           -limits::denorm_min(), limits::max(), 1e-200, -1e-200, -1.0 / 3, 2.5e9});
    Doubles values(count);
    for (std::size_t k = 0; k < count; ++k)
        values[k] = k % 3 == 0 ? special[k / 3 % std::size(special)] : std::sin(static_cast<double>(k)) * 4e4;
    return values;
}

/// `count` masses of an axis, up and down.
Doubles massesOf(std::size_t count) {
    Doubles masses(count);
    for (std::size_t k = 0; k < count; ++k)
        masses[k] = 1050 + 1049 * std::sin(static_cast<double>(k));
    return masses;
}

/// Gives what the single conversion makes of `source`, after a look at that of all at once.
template <class Object, class Source, class Destination>
std::vector<Destination> converted(const Object& law, const std::vector<Source>& source,
                                   void (Object::*many)(const std::vector<Source>&, std::vector<Destination>&) const,
                                   Destination (Object::*single)(Source) const,
                                   void (Object::*inPlace)(Doubles&) const = nullptr) {
    std::vector<Destination> expected;
    for (const Source value : source)
        expected.push_back((law.*single)(value));
    std::vector<Destination> results(source.size() / 2, Destination{7});
    (law.*many)(source, results);
    EXPECT_TRUE(sameBits(results, expected));
    if constexpr (std::is_same_v<Source, Destination>) {
        results = source;
        (law.*many)(results, results);
        EXPECT_TRUE(sameBits(results, expected));
        results = source;
        (law.*inPlace)(results);
        EXPECT_TRUE(sameBits(results, expected));
    }
    return expected;
}

void expectBitsOfSingles(const T& law, const Doubles& masses, const Doubles& raws) {
    converted(law, masses, &T::MassesToRaws, &T::MassToRaw, &T::MassesToRaws);
    converted(law, raws, &T::RawsToMasses, &T::RawToMass, &T::RawsToMasses);
    converted(law, masses, &T::MassesToDIndices, &T::MassToDIndex, &T::MassesToDIndices);
    converted(law, masses, &T::MassesToIndices, &T::MassToIndex);
    converted(law, raws, &T::RawsToIndices, &T::RawToIndex);
    const Doubles indices = converted(law, raws, &T::RawsToDIndices, &T::RawToDIndex, &T::RawsToDIndices);
    converted(law, indices, &T::DIndicesToMasses, &T::DIndexToMass, &T::DIndicesToMasses);
    converted(law, indices, &T::DIndicesToRaws, &T::DIndexToRaw, &T::DIndicesToRaws);
    Indices whole(masses.size());
    std::iota(whole.begin(), whole.end(), -3);
    converted(law, whole, &T::IndicesToRaws, &T::IndexToRaw);
    const Doubles expected = converted(law, whole, &T::IndicesToMasses, &T::IndexToMass);
    if (whole.empty())
        return;
    Doubles range{1, 2, 3};
    law.IndexRangeToMasses(-3, whole.back(), range);
    EXPECT_TRUE(sameBits(range, expected));
}

TEST(Batch, HasTheBitsOfTheSingleConversionForAnyTeam) {
    using Gpx = ICalibrationTransformatorGPX;
    for (const std::size_t count : {0UL, 1UL, 7UL, 8UL, 99UL, 100UL, 257UL, 5003UL})
        for (const int team : {1, 3}) {
            SCOPED_TRACE(count);
            omp_set_num_threads(team);
            const Doubles awkward = awkwardValues(count);
            for (const auto& law : lawsWithoutFailure())
                expectBitsOfSingles(*law, awkward, awkward);
            for (const auto& law : wrappingLaws()) {
                const Doubles masses = massesOf(count);
                Doubles raws;
                law->MassesToRaws(masses, raws);
                expectBitsOfSingles(*law, masses, raws);
                if (const auto* const gpx = dynamic_cast<const Gpx*>(law.get())) {
                    converted(*gpx, masses, &Gpx::MassesToPreciseMasses, &Gpx::MassToPreciseMass,
                              &Gpx::MassesToPreciseMasses);
                    converted(*gpx, masses, &Gpx::PreciseMassesToMasses, &Gpx::PreciseMassToMass,
                              &Gpx::PreciseMassesToMasses);
                }
            }
        }
    omp_set_num_threads(1);
}

TEST(WrappingLaws, HoldTheirRoundTrips) {
    for (const auto& law : wrappingLaws()) {
        for (const double mass : massesOf(2000))
            EXPECT_NEAR(law->RawToMass(law->MassToRaw(mass)), mass, 1e-9 * mass);
        for (std::int32_t index = 0; index < 90000; index += 37) {
            const double mass = law->IndexToMass(index);
            EXPECT_NEAR(law->MassToDIndex(mass), index, 1e-9 * (index + 24000));
            EXPECT_EQ(law->MassToIndex(mass), index);
        }
    }
}

TEST(WrappingLaws, ManyThreadsMayConvertAtOnceAndGetTheSameBits) {
    for (const auto& law : wrappingLaws()) {
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

TEST(Batch, BelowTheThresholdTheLawsOwnFailureReachesTheCaller) {
    const auto law = endsAtRaw40();
    for (const int threads : {1, 2}) {
        omp_set_num_threads(threads);
        Doubles raws(100, 10.0);
        raws[60] = 41.0;
        EXPECT_EQ(failureOf([&] { law->RawsToMasses(raws); }), g_failed);
        raws.assign(99, 10.0);
        raws[60] = 41.0;
        EXPECT_EQ(failureOf([&] { law->RawsToMasses(raws); }), g_complex);
        EXPECT_EQ(Doubles(&raws[59], &raws[62]), Doubles({law->RawToMass(10.0), 41.0, 10.0}));
        Doubles masses(99, 7.0);
        EXPECT_EQ(failureOf([&] { law->RawsToMasses(Doubles(1, 41.0), masses); }), g_complex);
        EXPECT_EQ(masses, Doubles{0.0});
    }
    omp_set_num_threads(1);
    Doubles nothing;
    law->RawsToMasses(nothing);
}

TEST(Batch, RangesHaveAThresholdOfTheirOwn) {
    const auto law = endsAtRaw40();
    Doubles masses{1, 2, 3};
    for (const auto& same : {law, corrected(law, {0, 1}, 0, 1)}) {
        EXPECT_EQ(failureOf([&] { same->IndexRangeToMasses(35, 41, masses); }), g_complex);
        EXPECT_EQ(masses.size(), 6U);
        EXPECT_EQ(masses[5], law->IndexToMass(40));
        EXPECT_EQ(failureOf([&] { same->IndexRangeToMasses(34, 41, masses); }), g_failed);
    }
    law->IndexRangeToMasses(5, 5, masses);
    EXPECT_EQ(masses, Doubles{law->IndexToMass(5)});
    EXPECT_EQ(failureOf([&] { law->IndexRangeToMasses(5, 4, masses); }),
              "argument: Kvan::CCO::Functors::RangeTransformation(TTransformationFunctor transFunctor, boost::int32_t "
              "first, boost::int32_t last, TDest & dest): invalid transformation: range invalid: last < first with "
              "last = 4 and first = 5");
}

#ifndef __SANITIZE_THREAD__  // libgomp is not instrumented: each barrier of a team would look like a race

TEST(Batch, InsideAParallelRegionNothingForksAndTheLawsFailurePasses) {
    const auto law = endsAtRaw40(0.0625);
    std::string failures[4];
    Doubles masses[4];
#pragma omp parallel for num_threads(2) schedule(static, 1)
    for (int k = 0; k < 4; ++k)
        failures[k] = failureOf([&] { law->IndexRangeToMasses(-384, 641, masses[k]); });
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(failures[k], g_complex);
        EXPECT_EQ(masses[k].size(), 1025U);
    }
}

TEST(Batch, AnyNumberOfThreadsGivesTheSameBits) {
    const auto expectSameBits = [](const TransformatorPtr& law, std::int32_t points) {
        Doubles expected;
        for (const int threads : {1, 2, 7}) {
            omp_set_num_threads(threads);
            Doubles masses;
            law->IndexRangeToMasses(0, points - 1, masses);
            if (threads == 1)
                expected = masses;
            EXPECT_TRUE(sameBits(masses, expected)) << threads;
        }
    };
    // Enough work for a team.
    for (const auto& law : lawsWithoutFailure())
        expectSameBits(law, 1'500'001);
    for (const auto& law : wrappingLaws())
        expectSameBits(law, 70'001);
    omp_set_num_threads(7);
    Doubles masses;
    EXPECT_EQ(failureOf([&] { endsAtRaw40(0x1p-15)->IndexRangeToMasses(0, 40 * 32768 + 1, masses); }), g_failed);
    omp_set_num_threads(1);
}

#endif

}  // namespace

}  // namespace kvan::calibration
