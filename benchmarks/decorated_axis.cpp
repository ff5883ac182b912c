// The mass axis of a profile spectrum by laws around another one, against the axis of the law inside.

#include "ratio.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>

#include <omp.h>

namespace {

using namespace kvan::calibration;
using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

const ICalibrationTransformatorFactory& factory() {
    return *Transformation::CalibrationTransformatorFactory::instance();
}

/// 200,000 points of 0.2 ns from 20,000 ns on: masses of about 100 to 900.
TransformatorPtr tof() {
    return factory().createTransformator(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(120.5, 250000.0, -1.5e-3),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(20000.0, 0.2));
}

TransformatorPtr corrected(const TransformatorPtr& inner, const std::vector<double>& coefficients) {
    return factory().createTransformatorGPX(
        inner, std::make_shared<Constants::CalibrationPolynomialGPX>(coefficients, 0.0, 0.0, 50.0, 3000.0, true));
}

/// mass = raw^2 * 2.5e-7 about, as the law inside has it.
TransformatorPtr kite1() {
    return factory().createTransformatorKite(20000.0, 0.2, 120.5, 250000.0, 0.0, 1320.6, 120.5,
                                             {0.25, 1e-4, 2.5e-7, 2e-13}, 1046.5, 20000.0, 60000.0, 0, 200'000);
}

/// w of the root of the mass, as far as the law inside; two parents, mixed.
TransformatorPtr kite2(const CCalibPolynomial& global) {
    return factory().createTransformatorKite2(
        20000.0, 0.2, 120.5, 250000.0, 0.0,
        {{{12.5, 1995.0, 0.05, -2e-4}, 5.0, 50.0, 905.5}, {{11.5, 1994.0, 0.06, -1e-4}, 5.0, 50.0, 1570.7}}, global,
        {12.0, 0.01}, 2, 1320.6, 104.5, 0, 200'000);
}

TransformatorPtr psd(const TransformatorPtr& inner) {
    return factory().createTransformatorPsd(
        inner, std::make_shared<Constants::CalibrationPolynomialPSDFAST>(
                   Constants::CalibrationPolynomialPSDFAST::Numbers{.uRefFull = 20.25,
                                                                    .uSegment = 12.5,
                                                                    .calibrationMass = 1046.5,
                                                                    .parentMass = 1320.6,
                                                                    .minArg = 50.0,
                                                                    .maxArg = 2500.0,
                                                                    .spc = {0.02, -1e-3, 0.06, 2e-4},
                                                                    .ocp = {2.5, -0.01, 1e-4, 0.0}}));
}

/// One thread.
void rangeOf(benchmark::State& state, const TransformatorPtr& law, const TransformatorPtr& inside, double goal) {
    const auto last = static_cast<std::int32_t>(state.range(0)) - 1;
    std::vector<double> masses;
    std::vector<double> massesInside;
    omp_set_num_threads(1);
    benchmarks::reportRatio(
        state, goal, [&] { law->IndexRangeToMasses(0, last, masses); },
        [&] { inside->IndexRangeToMasses(0, last, massesInside); });
}

/// Peak lists to raw values.
void massesOf(benchmark::State& state, const TransformatorPtr& law, const TransformatorPtr& inside, double goal) {
    std::vector<double> masses;
    std::vector<double> raws;
    omp_set_num_threads(1);
    inside->IndexRangeToMasses(0, static_cast<std::int32_t>(state.range(0)) - 1, masses);
    benchmarks::reportRatio(
        state, goal, [&] { law->MassesToRaws(masses, raws); }, [&] { inside->MassesToRaws(masses, raws); });
}

/// Out of blobs.
void blobOf(benchmark::State& state, const TransformatorPtr& law, const TransformatorPtr& inside, double goal) {
    const Transformation::CalibrationTransformatorFactorySerialization serialization;
    const auto reading = [&](const TransformatorPtr& transformator) {
        std::vector<unsigned char> blob;
        serialization.SerializeToBlob(transformator, blob);
        return [&serialization, blob, count = state.range(0)] {
            for (std::int64_t round = 0; round < count; ++round)
                benchmark::DoNotOptimize(serialization.DeserializeFromBlob(blob));
        };
    };
    benchmarks::reportRatio(state, goal, reading(law), reading(inside));
}

void decoratedBenchmark(const char* name, auto function, const TransformatorPtr& law, const TransformatorPtr& inside,
                        double goal, std::int64_t count = 200'000) {
    benchmark::RegisterBenchmark(name, function, law, inside, goal)->Arg(count)->UseManualTime()->Iterations(201);
}

const bool g_registered = [] {
    const TransformatorPtr inside = tof();
    // Some parts per million, answered at first order; then far off, where every mass is searched, for information.
    const std::vector<double> cubic = {0.0, 1.0 - 4e-6, 9e-9, -4e-12};
    const std::vector<double> ninthDegree = {1e-3, 1.0 - 4e-6, 9e-9, -4e-12, 1e-15, -1e-19, 1e-23, 1e-27, 1e-31, 1e-35};
    const std::vector<double> strong = {0.0, 1.0, 1e-4};
    decoratedBenchmark("range/gpx", rangeOf, corrected(inside, cubic), inside, 12.0);
    decoratedBenchmark("range/gpxNinthDegree", rangeOf, corrected(inside, ninthDegree), inside, 12.0);
    decoratedBenchmark("range/gpxSearched", rangeOf, corrected(inside, strong), inside, 0.0);
    decoratedBenchmark("raws/gpx", massesOf, corrected(inside, cubic), inside, 12.0);
    decoratedBenchmark("range/kite1", rangeOf, kite1(), inside, 40.0);
    decoratedBenchmark("range/kite2", rangeOf, kite2({{0.0, 1.0}, 0.0, 0.0, 0.0}), inside, 40.0);
    decoratedBenchmark("range/kite2Global", rangeOf, kite2({{0.02, 1.0001, -1e-8}, 50.0, 2500.0, 0.0}), inside, 40.0);
    decoratedBenchmark("range/psd", rangeOf, psd(inside), inside, 40.0);
    // The way back of KITE 1 and PSD is a search, that of KITE 2 is not; for information.
    decoratedBenchmark("raws/kite1", massesOf, kite1(), inside, 0.0);
    decoratedBenchmark("raws/kite2", massesOf, kite2({{0.02, 1.0001, -1e-8}, 50.0, 2500.0, 0.0}), inside, 0.0);
    decoratedBenchmark("raws/psd", massesOf, psd(inside), inside, 0.0);
    decoratedBenchmark("blob/kite1", blobOf, kite1(), inside, 0.0, 1000);
    decoratedBenchmark("blob/kite2", blobOf, kite2({{0.02, 1.0001, -1e-8}, 50.0, 2500.0, 0.0}), inside, 0.0, 1000);
    decoratedBenchmark("blob/psd", blobOf, psd(inside), inside, 0.0, 1000);
    return true;
}();

}  // namespace
