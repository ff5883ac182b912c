#include "axis/tandem_laws.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>

#include <cmath>

// Laws of fragments, which fly on with the speed of their precursor and so need its m/z. The numbers are chosen so that
// the fragments of any precursor come out near the plain law of `tof`; what is left is the small bend that these laws
// are for.

namespace kvan::sample::axis {

namespace {

using namespace kvan::calibration;
using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

const ICalibrationTransformatorFactory& factory() {
    return *Transformation::CalibrationTransformatorFactory::instance();
}

/// m/z of the peptides that the laws were measured with.
constexpr double g_calibrants[] = {904.468, 1296.685, 1570.677};

/// Nanoseconds that pass before the flight.
constexpr double g_delay = 120.0;
/// Nanoseconds of flight at m/z 1, and how many more there are by its first and second power: the flight path that
/// the plain laws have.
constexpr double g_flight = 1280.37;
constexpr double g_square = 0.004;
constexpr double g_cube = -2.5e-5;

TransformatorPtr kite1(const TandemLaw& law) {
    // The flight path the other way round; the rest is what the jump of the potential leaves.
    const double coefficients[] = {2e-3, 2e-6, 1.0 / (g_flight * g_flight), -1e-15};
    ICalibrationTransformatorFactory::Kite1Numbers numbers;
    numbers.parentMass = law.precursor;
    numbers.correctionTime = g_delay;
    numbers.kiteTime = 31'500.0;
    numbers.calibrationParentMass = g_calibrants[1];
    numbers.calibTimeRange = {std::sqrt(law.lower) * g_flight, std::sqrt(law.upper) * g_flight};
    for (const double coefficient : coefficients)
        numbers.coefficients.push_back(coefficient * law.scale);
    return factory().createTransformatorKite(law.tof, numbers);
}

TransformatorPtr kite2(const TandemLaw& law) {
    ICalibrationTransformatorFactory::Kite2Numbers numbers;
    numbers.parentMass = law.precursor;
    numbers.referenceTime = g_delay;
    numbers.measuredParentMass = g_calibrants[1];
    numbers.measuredReferenceTime = g_delay;
    numbers.ignoreIndexBounds = true;
    numbers.global = {{0.002, 1.0 + 2e-6, -1e-9}, law.lower * 0.5, law.upper * 2.0, 0.0};
    // Each power of the root takes its own share of the scale.
    const double root = std::sqrt(law.scale);  // the law is one of the root of the mass
    for (const double calibrant : g_calibrants) {
        const double offset = calibrant * 1e-3;
        numbers.parents.push_back({{offset, g_flight / root, g_square / law.scale, g_cube / (law.scale * root)},
                                   std::sqrt(law.lower) * 0.5,
                                   std::sqrt(law.upper) * 1.5,
                                   calibrant});
    }
    numbers.vc0 = {0.5, 0.02};
    return factory().createTransformatorKite2(law.tof, numbers);
}

TransformatorPtr psd(const TandemLaw& law) {
    constexpr double segment = 12.5;  // kilovolts
    using Polynomial = Constants::CalibrationPolynomialPSDFAST;
    Polynomial::Numbers numbers;
    numbers.uRefFull = 20.25;
    numbers.uSegment = segment;
    numbers.calibrationMass = g_calibrants[1];
    numbers.parentMass = law.precursor > 0.0 ? law.precursor : numbers.calibrationMass;
    numbers.minArg = std::floor(law.lower * 0.5);
    numbers.maxArg = std::ceil(law.upper * 1.5);
    numbers.spc = {1e-4, -2e-5, 1.0 / segment, 1e-8};
    numbers.ocp = {0.25, -2e-3, 1e-6, 0.0};
    return factory().createTransformatorPsd(law.tof, std::make_shared<Polynomial>(numbers));
}

}  // namespace

TransformatorPtr TandemLaw::of(SampleCalibration calibration) const {
    switch (calibration) {
        case SampleCalibration::Kite1:
            return kite1(*this);
        case SampleCalibration::Kite2:
            return kite2(*this);
        case SampleCalibration::Psd:
            return psd(*this);
        default:
            return tof;
    }
}

}  // namespace kvan::sample::axis
