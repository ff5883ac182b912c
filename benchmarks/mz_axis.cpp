// The mass axis of a profile spectrum against the plain loop of the same law, bit for bit the same; and a calibration
// out of its blob against a copy of its constants.

#include "calibration-core/constants/CalibrationConstantsPaladin.h"
#include "calibration-core/constants/CalibrationConstantsTOF.h"
#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"
#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"
#include "plain_laws.h"
#include "ratio.h"

#include <boost/chrono/system_clocks.hpp>
#include <cstring>
#include <string>

#include <omp.h>

namespace {

namespace transformation = kvan::calibration::Transformation;
namespace constants = kvan::calibration::Constants;
using benchmarks::PlainLaw;
using PlainAxis = void (*)(const PlainLaw&, std::int32_t, std::int32_t, std::vector<double>&);
using TransformatorPtr = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

// 200,000 points of 0.2 ns from 20,000 ns on: masses of about 100 to 2,300.
constexpr PlainLaw g_tofLinear{20000.0, 0.2, 120.5, 250000.0, 0.0};
constexpr PlainLaw g_tofQuadratic{20000.0, 0.2, 120.5, 250000.0, -1.5e-3};
constexpr PlainLaw g_ionTrap{50.0, 0.01, 0.125, 1.0005, 2.5e-7};

TransformatorPtr tof(const PlainLaw& law) {
    return transformation::CalibrationTransformatorFactory::instance()->createTransformator(
        std::make_shared<constants::CalibrationConstantsFunctionalTOF1>(law.c0, law.c1, law.c2),
        std::make_shared<constants::CalibrationConstantsPhysicalTOF>(law.timeDelay, law.timeBase));
}

TransformatorPtr ionTrap(const PlainLaw& law) {
    return transformation::CalibrationTransformatorFactory::instance()->createTransformator(
        std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(law.c0, law.c1, law.c2),
        std::make_shared<constants::CalibrationConstantsPhysicalPaladin>(law.timeDelay / law.timeBase,
                                                                         1.0 / law.timeBase));
}

void massAxis(benchmark::State& state, const TransformatorPtr& transformator, PlainLaw law, PlainAxis plain,
              double goal) {
    const auto points = static_cast<std::int32_t>(state.range(0));
    // The line as the constants give it: an ion trap's is divided out of other numbers.
    law.timeDelay = transformator->IndexToRaw(0);
    std::vector<double> expected;
    std::vector<double> masses;
    plain(law, 0, points - 1, expected);
    omp_set_num_threads(1);
    transformator->IndexRangeToMasses(0, points - 1, masses);
    if (masses.size() != expected.size() ||
        std::memcmp(masses.data(), expected.data(), masses.size() * sizeof(double)) != 0)
        return state.SkipWithError("the plain loop gives other bits");
    benchmarks::reportRatio(
        state, goal, [&] { transformator->IndexRangeToMasses(0, points - 1, masses); },
        [&] { plain(law, 0, points - 1, expected); });
}

void tofQuadraticRange(benchmark::State& state) {
    massAxis(state, tof(g_tofQuadratic), g_tofQuadratic, benchmarks::tofQuadraticAxis, 0.35);
}

void tofLinearRange(benchmark::State& state) {
    massAxis(state, tof(g_tofLinear), g_tofLinear, benchmarks::tofLinearAxis, 0.5);
}

void ionTrapQuadraticRange(benchmark::State& state) {
    massAxis(state, ionTrap(g_ionTrap), g_ionTrap, benchmarks::ionTrapQuadraticAxis, 0.5);
}

/// Two threads against one, wall time: a fork must never cost more than it brings.
void twoThreadRange(benchmark::State& state) {
    const auto points = static_cast<std::int32_t>(state.range(0));
    const auto transformator = tof(g_tofQuadratic);
    std::vector<double> masses;
    const auto range = [&](int threads) {
        omp_set_num_threads(threads);
        transformator->IndexRangeToMasses(0, points - 1, masses);
    };
    range(2);
    benchmarks::reportRatio<boost::chrono::steady_clock>(
        state, points >= 2'000'000 ? 0.6 : 1.15, [&] { range(2); }, [&] { range(1); });
    omp_set_num_threads(1);
}

/// Goal: three times the copy of the constants or 2 microseconds a blob, whichever is more.
void blobDeserialization(benchmark::State& state) {
    constexpr int rounds = 1000;
    const transformation::CalibrationTransformatorFactorySerialization serialization;
    const auto transformator = tof(g_tofQuadratic);
    std::vector<unsigned char> blob;
    serialization.SerializeToBlob(transformator, blob);
    state.counters["blobs"] = rounds;
    state.counters["goal_us"] = 2.0 * rounds;
    benchmarks::reportRatio(
        state, 3.0,
        [&] {
            for (int round = 0; round < rounds; ++round)
                benchmark::DoNotOptimize(serialization.DeserializeFromBlob(blob));
        },
        [&] {
            for (int round = 0; round < rounds; ++round) {
                benchmark::DoNotOptimize(transformator->GetFunctionalConstants());
                benchmark::DoNotOptimize(transformator->GetPhysicalConstants());
            }
        });
}

BENCHMARK(tofQuadraticRange)->Arg(200'000)->UseManualTime()->Iterations(501);
BENCHMARK(tofLinearRange)->Arg(200'000)->UseManualTime()->Iterations(501);
BENCHMARK(ionTrapQuadraticRange)->Arg(200'000)->UseManualTime()->Iterations(501);
BENCHMARK(twoThreadRange)->Arg(8)->Arg(1'000)->Arg(200'000)->Arg(2'000'000)->UseManualTime()->Iterations(201);
BENCHMARK(blobDeserialization)->UseManualTime()->Iterations(201);

}  // namespace
