// The mass axis of a profile spectrum by laws around another one, against the axis of the law inside.

#include "calibration-core/constants/CalibrationConstantsTOF.h"
#include "calibration-core/constants/CalibrationPolynomialGPX.h"
#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"
#include "ratio.h"

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

void decoratedBenchmark(const char* name, auto function, const TransformatorPtr& law, const TransformatorPtr& inside,
                        double goal) {
    benchmark::RegisterBenchmark(name, function, law, inside, goal)->Arg(200'000)->UseManualTime()->Iterations(201);
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
    return true;
}();

}  // namespace
