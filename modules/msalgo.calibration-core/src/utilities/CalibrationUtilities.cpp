#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>
#include <calibration-core/interfaces/ICalibrationUtilities.h>

#include <algorithm>
#include <cmath>
#include <numeric>

// Error statistics over pairs of raw value and reference mass, as many as the shorter of the two lists has. A reference
// that is not above 0.0 has an error of 0.0 and counts. The single error is mass less reference, that of the statistics
// reference less mass: both signs are given.
namespace kvan::calibration {

namespace Utilities {

namespace {

using Values = ICalibrationUtilities::Values;

double ppm(double error, double reference) {
    return error / reference * 1000000.0;
}

Values errorsOf(const ICalibrationTransformator& transformator, const Values& raws, const Values& referenceMasses,
                MassErrorUnit unit) {
    Values errors(std::min(raws.size(), referenceMasses.size()));
    for (std::size_t k = 0; k < errors.size(); ++k) {
        // No part per million of nothing; NaN is no reference either.
        if (!(referenceMasses[k] > 0.0))
            continue;
        errors[k] = referenceMasses[k] - transformator.RawToMass(raws[k]);
        if (unit == MassErrorUnit::Ppm)
            errors[k] = ppm(errors[k], referenceMasses[k]);
    }
    return errors;
}

/// The sum of squares of the distances from `centre`.
double squaresAbout(double centre, const Values& values) {
    return std::accumulate(values.begin(), values.end(), 0.0,
                           [centre](double sum, double value) { return sum + (value - centre) * (value - centre); });
}

}  // namespace

/// The one implementation of `ICalibrationUtilities`.
class CalibrationUtilities final : public ICalibrationUtilities {
public:
    std::shared_ptr<ICalibrationTransformator> PeelDecorators(
        const std::shared_ptr<ICalibrationTransformator>& transformator) const override {
        auto innermost = transformator;
        // Each step copies what it peels; the argument stays as it is.
        while (const auto* decorator = dynamic_cast<const ICalibrationTransformatorDecorator*>(innermost.get()))
            innermost = decorator->GetDecoratedTransformator();
        return innermost;
    }

    double MassErrorPpm(const ICalibrationTransformator& transformator, double raw,
                        double referenceMass) const override {
        return referenceMass > 0.0 ? ppm(transformator.RawToMass(raw) - referenceMass, referenceMass) : 0.0;
    }

    Values MassErrorsPpm(const ICalibrationTransformator& transformator, const Values& raws,
                         const Values& referenceMasses) const override {
        Values errors(std::min(raws.size(), referenceMasses.size()));
        for (std::size_t k = 0; k < errors.size(); ++k)
            errors[k] = MassErrorPpm(transformator, raws[k], referenceMasses[k]);
        return errors;
    }

    double RootMeanSquareError(const ICalibrationTransformator& transformator, const Values& raws,
                               const Values& referenceMasses, MassErrorUnit unit) const override {
        const Values errors = errorsOf(transformator, raws, referenceMasses, unit);
        return errors.empty() ? 0.0 : std::sqrt(squaresAbout(0.0, errors) / static_cast<double>(errors.size()));
    }

    double StandardDeviation(const ICalibrationTransformator& transformator, const Values& raws,
                             const Values& referenceMasses, MassErrorUnit unit) const override {
        const Values errors = errorsOf(transformator, raws, referenceMasses, unit);
        // The divisor is one less than the number of errors.
        if (errors.size() < 2)
            return 0.0;
        const auto count = static_cast<double>(errors.size());
        const double mean = std::accumulate(errors.begin(), errors.end(), 0.0) / count;
        return std::sqrt(squaresAbout(mean, errors) / (count - 1.0));
    }
};

}  // namespace Utilities

std::shared_ptr<ICalibrationUtilities> createCalibrationUtilities() {
    return std::make_shared<Utilities::CalibrationUtilities>();
}

}  // namespace kvan::calibration
