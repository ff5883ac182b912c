#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration {

/// Facet of a transformator that corrects the masses of another one: what that one gives is the apparent mass, and the
/// precise mass found from it is the mass of the whole. Index and raw value are those of the transformator inside.
///
/// Without a polynomial that is to be used and has coefficients nothing is corrected.
class ICalibrationTransformatorGPX {
public:
    using Doubles = ICalibrationTransformator::Doubles;

    virtual ~ICalibrationTransformatorGPX() = default;

    /// A deep copy.
    virtual std::shared_ptr<ICalibrationTransformator> GetTransformator() const = 0;
    /// Takes a deep copy; null is ignored.
    virtual void SetTransformator(const std::shared_ptr<ICalibrationTransformator>& transformator) = 0;
    /// A deep copy; null if none is held.
    virtual std::shared_ptr<ICalibrationPolynomialGPX> GetPolynomial() const = 0;
    /// Takes a deep copy; null removes the one that is held.
    virtual void SetPolynomial(const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) = 0;

    /// The apparent mass of a precise mass: G.
    virtual double PreciseMassToMass(double mass) const = 0;
    /// The precise mass of an apparent mass: the first-order inverse x = (m - G(m)) + m where G(x) is within 1e-5 of m,
    /// else the solution of G(x) = m around m. Throws `std::logic_error` "gpx polynomial could not be inverted in a
    /// unique way" if there is none.
    virtual double MassToPreciseMass(double mass) const = 0;

    // Any number of masses at once, by a team if it takes long enough, with the bits of the single forms; source and
    // destination may be one vector. Throw `std::logic_error` "a transformation failed, most likely due to bad
    // calibration constants" for a mass that fails; any other mass may then be converted or not.

    virtual void PreciseMassesToMasses(Doubles& masses) const = 0;
    /// The text of a failure begins with "GPX transformation failed, ".
    virtual void PreciseMassesToMasses(const Doubles& preciseMasses, Doubles& masses) const = 0;
    virtual void MassesToPreciseMasses(Doubles& masses) const = 0;
    virtual void MassesToPreciseMasses(const Doubles& masses, Doubles& preciseMasses) const = 0;
};

}  // namespace kvan::calibration
