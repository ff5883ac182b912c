// The mass axis of a profile spectrum against the plain loop of the same law, bit for bit the same; and a calibration
// out of its blob against a copy of its constants.

#include "plain_laws.h"
#include "ratio.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>

#include <atomic>
#include <boost/chrono/system_clocks.hpp>
#include <chrono>
#include <cstring>
#include <numeric>
#include <string>
#include <thread>

#include <omp.h>

namespace {

namespace transformation = kvan::calibration::Transformation;
namespace constants = kvan::calibration::Constants;
using benchmarks::PlainLaw;
using TransformatorPtr = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

// 200,000 points of 0.2 ns from 20,000 ns on: masses of about 100 to 2,300.
constexpr PlainLaw g_tofLinear{20000.0, 0.2, 120.5, 250000.0, 0.0};
constexpr PlainLaw g_tofQuadratic{20000.0, 0.2, 120.5, 250000.0, -1.5e-3};
constexpr PlainLaw g_tof2Linear{20000.0, 0.2, 120.5, 250000.0, 0.0, 0.0, 0.75};
constexpr PlainLaw g_tof2Quadratic{20000.0, 0.2, 120.5, 250000.0, -1.5e-3, 0.0, 0.75};
constexpr PlainLaw g_tof2Cubic{20000.0, 0.2, 120.5, 250000.0, -1.5e-3, -2.5e-5, 0.75};
constexpr PlainLaw g_ionTrap{50.0, 0.01, 0.125, 1.0005, 2.5e-7};
constexpr PlainLaw g_ionTrapLinear{50.0, 0.01, 0.125, 1.0005, 0.0};
constexpr PlainLaw g_linear{0.0, 1.0, 50.0, 0.01, 0.0};
// 200,000 points of 1 MHz: masses of about 107 to 2,000.
constexpr benchmarks::PlainFtmsLaw g_ftms{1.05e6, -5.0, 0.0, -1.5, 1.07e8, 200'000};
constexpr benchmarks::PlainFtmsLaw g_ftmsQuadratic{1.05e6, -5.0, -3.2e7, -1.5, 1.07e8, 200'000};

using FunctionalPtr = std::shared_ptr<kvan::calibration::ICalibrationConstantsFunctional>;
using PhysicalPtr = std::shared_ptr<kvan::calibration::ICalibrationConstantsPhysical>;

TransformatorPtr make(const FunctionalPtr& functional, const PhysicalPtr& physical) {
    return transformation::CalibrationTransformatorFactory::instance()->createTransformator(functional, physical);
}

TransformatorPtr tof(const PlainLaw& law) {
    return make(std::make_shared<constants::CalibrationConstantsFunctionalTOF1>(law.c0, law.c1, law.c2),
                std::make_shared<constants::CalibrationConstantsPhysicalTOF>(law.timeDelay, law.timeBase));
}

TransformatorPtr tof2(const PlainLaw& law) {
    return make(std::make_shared<constants::CalibrationConstantsFunctionalTOF2>(law.c0, law.c1, law.c2, law.c3, law.c4),
                std::make_shared<constants::CalibrationConstantsPhysicalTOF>(law.timeDelay, law.timeBase));
}

TransformatorPtr ionTrap(const PlainLaw& law) {
    return make(std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(law.c0, law.c1, law.c2),
                std::make_shared<constants::CalibrationConstantsPhysicalPaladin>(law.timeDelay / law.timeBase,
                                                                                 1.0 / law.timeBase));
}

TransformatorPtr linear(const PlainLaw& law) {
    return make(std::make_shared<constants::CalibrationConstantsFunctionalLinear>(law.c0, law.c1),
                std::make_shared<constants::CalibrationConstantsPhysicalLinear>());
}

/// Modes 4 and 5: size steps from low to low + width, index 0 at the upper end.
TransformatorPtr ftms(const benchmarks::PlainFtmsLaw& law) {
    const double width = law.step * -1.0 * law.size;
    const auto axis = std::make_shared<constants::CalibrationConstantsPhysicalFTMS>(law.start - width, width, law.size);
    if (law.alpha == 0.0)
        return make(std::make_shared<constants::CalibrationConstantsFunctionalFTMS04>(law.beta, law.freqHigh, 4), axis);
    return make(std::make_shared<constants::CalibrationConstantsFunctionalFTMS1356>(law.alpha, law.beta, law.freqHigh,
                                                                                    false, 5),
                axis);
}

/// `plain` fills the vector that it is given with the masses of that many points.
template <class PlainAxis>
void massAxis(benchmark::State& state, const TransformatorPtr& transformator, PlainAxis plain, double goal) {
    const auto points = static_cast<std::int32_t>(state.range(0));
    std::vector<double> expected;
    std::vector<double> masses;
    plain(points, expected);
    omp_set_num_threads(1);
    transformator->IndexRangeToMasses(0, points - 1, masses);
    if (masses.size() != expected.size() ||
        std::memcmp(masses.data(), expected.data(), masses.size() * sizeof(double)) != 0)
        return state.SkipWithError("the plain loop gives other bits");
    benchmarks::reportRatio(
        state, goal, [&] { transformator->IndexRangeToMasses(0, points - 1, masses); },
        [&] { plain(points, expected); });
}

using PlainAxis = void (*)(const PlainLaw&, std::int32_t, std::int32_t, std::vector<double>&);
using PlainFtmsAxis = void (*)(const benchmarks::PlainFtmsLaw&, std::int32_t, std::int32_t, std::vector<double>&);

void rangeOf(benchmark::State& state, TransformatorPtr (*law)(const PlainLaw&), PlainLaw numbers, PlainAxis plain,
             double goal) {
    const TransformatorPtr transformator = law(numbers);
    // The line as the constants give it: an ion trap's is divided out of other numbers.
    numbers.timeDelay = transformator->IndexToRaw(0);
    massAxis(
        state, transformator,
        [&](std::int32_t points, std::vector<double>& masses) { plain(numbers, 0, points - 1, masses); }, goal);
}

void ftmsRangeOf(benchmark::State& state, const benchmarks::PlainFtmsLaw& numbers, PlainFtmsAxis plain, double goal) {
    massAxis(
        state, ftms(numbers),
        [&](std::int32_t points, std::vector<double>& masses) { plain(numbers, 0, points - 1, masses); }, goal);
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

/// Two threads against one for a peak list, after a pause in which the team fell asleep and beside a busy process.
void twoThreadPeakListAfterIdling(benchmark::State& state) {
    const auto transformator = tof(g_tofQuadratic);
    std::vector<double> lines(1'000);
    std::iota(lines.begin(), lines.end(), 500.25);
    std::vector<double> masses;
    std::atomic<bool> finished = false;
    std::thread neighbour([&] {
        while (!finished.load(std::memory_order_relaxed))
            benchmark::DoNotOptimize(&finished);
    });
    std::vector<double> times[2];
    for (auto _ : state)
        for (const int threads : {1, 2}) {
            omp_set_num_threads(threads);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            auto work = [&] { transformator->DIndicesToMasses(lines, masses); };
            times[threads - 1].push_back(benchmarks::microsecondsOf<boost::chrono::steady_clock>(work));
            state.SetIterationTime(times[threads - 1].back() * 1e-6);
        }
    finished = true;
    neighbour.join();
    omp_set_num_threads(1);
    state.counters["subject_us"] = benchmarks::median(times[1]);
    state.counters["yardstick_us"] = benchmarks::median(times[0]);
    state.counters["ratio"] = benchmarks::median(times[1]) / benchmarks::median(times[0]);
    state.counters["goal"] = 1.2;
}

/// Goal: two and a half times the copy of the constants or 2 microseconds a blob, whichever is more.
void blobDeserialization(benchmark::State& state, const TransformatorPtr& transformator) {
    constexpr int rounds = 1000;
    const transformation::CalibrationTransformatorFactorySerialization serialization;
    std::vector<unsigned char> blob;
    serialization.SerializeToBlob(transformator, blob);
    state.counters["blobs"] = rounds;
    state.counters["goal_us"] = 2.0 * rounds;
    benchmarks::reportRatio(
        state, 2.5,
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

TransformatorPtr compensated(const TransformatorPtr& transformator, std::size_t temperatures) {
    const auto functional = transformator->GetFunctionalConstants();
    const std::vector<double> values(temperatures, 25.0);
    const auto with = [&](auto law) {
        law->SetMeasuredTemperatures(values);
        law->SetCorrectionFactors(values);
        return make(law, transformator->GetPhysicalConstants());
    };
    if (const auto tof1 = std::dynamic_pointer_cast<constants::CalibrationConstantsFunctionalTOF1>(functional))
        return with(std::make_shared<constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation>(*tof1));
    return with(std::make_shared<constants::CalibrationConstantsFunctionalTOF2TemperatureCompensation>(
        *std::dynamic_pointer_cast<constants::CalibrationConstantsFunctionalTOF2>(functional)));
}

void rangeBenchmark(const char* name, auto... arguments) {
    benchmark::RegisterBenchmark(name, arguments...)->Arg(200'000)->UseManualTime()->Iterations(501);
}

void blobBenchmark(const char* name, const TransformatorPtr& transformator) {
    benchmark::RegisterBenchmark(name, blobDeserialization, transformator)->UseManualTime()->Iterations(201);
}

const bool g_registered = [] {
    rangeBenchmark("range/tofLinear", rangeOf, tof, g_tofLinear, benchmarks::tofLinearAxis, 0.5);
    rangeBenchmark("range/tofQuadratic", rangeOf, tof, g_tofQuadratic, benchmarks::tofQuadraticAxis, 0.35);
    rangeBenchmark("range/tof2Linear", rangeOf, tof2, g_tof2Linear, benchmarks::tof2LinearAxis, 0.5);
    rangeBenchmark("range/tof2Quadratic", rangeOf, tof2, g_tof2Quadratic, benchmarks::tof2QuadraticAxis, 0.35);
    rangeBenchmark("range/tof2Cubic", rangeOf, tof2, g_tof2Cubic, benchmarks::tof2CubicAxis, 0.2);
    rangeBenchmark("range/ionTrapLinear", rangeOf, ionTrap, g_ionTrapLinear, benchmarks::linearAxis, 0.5);
    rangeBenchmark("range/ionTrapQuadratic", rangeOf, ionTrap, g_ionTrap, benchmarks::ionTrapQuadraticAxis, 0.5);
    rangeBenchmark("range/linear", rangeOf, linear, g_linear, benchmarks::linearAxis, 0.5);
    rangeBenchmark("range/ftms", ftmsRangeOf, g_ftms, benchmarks::ftmsAxis, 0.3);
    rangeBenchmark("range/ftmsQuadratic", ftmsRangeOf, g_ftmsQuadratic, benchmarks::ftmsQuadraticAxis, 0.35);
    blobBenchmark("blob/tof", tof(g_tofQuadratic));
    blobBenchmark("blob/tofCompensated", compensated(tof(g_tofQuadratic), 1));
    blobBenchmark("blob/tofExtended", compensated(tof(g_tofQuadratic), 2));
    blobBenchmark("blob/tof2", tof2(g_tof2Cubic));
    blobBenchmark("blob/tof2Compensated", compensated(tof2(g_tof2Cubic), 2));
    blobBenchmark("blob/ftms", ftms(g_ftms));
    blobBenchmark("blob/ftmsQuadratic", ftms(g_ftmsQuadratic));
    blobBenchmark("blob/ionTrap", ionTrap(g_ionTrap));
    blobBenchmark("blob/linear", linear(g_linear));
    return true;
}();

BENCHMARK(twoThreadRange)->Arg(8)->Arg(1'000)->Arg(200'000)->Arg(2'000'000)->UseManualTime()->Iterations(201);
BENCHMARK(twoThreadPeakListAfterIdling)->UseManualTime()->Iterations(51);

}  // namespace
