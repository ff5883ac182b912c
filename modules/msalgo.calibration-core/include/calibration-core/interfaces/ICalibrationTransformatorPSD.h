#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialPSD.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration {

/// Facet of a transformator for post-source decay: the transformator inside gives apparent masses, of which a
/// polynomial makes true ones. Conversions have the thread rules of the transformator's own.
class ICalibrationTransformatorPSD {
public:
    virtual ~ICalibrationTransformatorPSD() = default;

    virtual double ApparentMassToMass(double apparentMass) const = 0;
    /// Throws `std::runtime_error` "PSD: unable to invert polynomial." unless an apparent mass between -1e9 and 1e9
    /// has that mass.
    virtual double MassToApparentMass(double mass) const = 0;

    /// A deep copy; null if there is none, which leaves apparent masses as they are.
    virtual std::shared_ptr<ICalibrationPolynomialPSDFAST> GetPolynomial() const = 0;
    /// A deep copy of the transformator inside.
    virtual std::shared_ptr<ICalibrationTransformator> GetApparentTransformator() const = 0;

protected:
    ICalibrationTransformatorPSD() = default;
    ICalibrationTransformatorPSD(const ICalibrationTransformatorPSD&) = default;
};

}  // namespace kvan::calibration
