#pragma once

#include <calibration-core/constants/CalibrationPolynomialKITE1.h>
#include <calibration-core/constants/CalibrationPolynomialKITE2.h>
#include <calibration-core/constants/CalibrationPolynomialPSDFAST.h>
#include <calibration-core/interfaces/ICalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <memory>

namespace kvan::calibration {

/// Makes transformators from constants. Stateless: any thread at any time. Every function takes deep copies of the
/// constants, chooses the class by comparing the highest coefficient with 0.0 exactly, and never gives null.
class ICalibrationTransformatorFactory {
public:
    enum class Decorator { RawBounds, IndexBounds };

    virtual ~ICalibrationTransformatorFactory() = default;

    using FunctionalPtr = std::shared_ptr<ICalibrationConstantsFunctional>;
    using PhysicalPtr = std::shared_ptr<ICalibrationConstantsPhysical>;
    using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

    /// Finds the family by the interfaces of the constants. Throws `std::invalid_argument` when the two are of
    /// different families or the functional ones of none.
    virtual TransformatorPtr createTransformator(const FunctionalPtr& functional,
                                                 const PhysicalPtr& physical) const = 0;

    /// `inner` kept between two bounds, a lower and an upper one, on raw values or on indices
    /// (`ICalibrationTransformatorDecorator`). Throws `std::invalid_argument` for another kind and for a null `inner`.
    virtual TransformatorPtr createDecoratedTransformator(Decorator kind, const TransformatorPtr& inner, double lower,
                                                          double upper) const = 0;

    /// Ion trap: c2 == 0.0 linear, else quadratic. This and the following throw `std::invalid_argument` when
    /// the functional constants are of another family or the physical ones do not give a line.
    virtual TransformatorPtr createTransformatorTrap(const FunctionalPtr& functional,
                                                     const PhysicalPtr& physical) const = 0;
    /// A straight line.
    virtual TransformatorPtr createTransformatorLinear(const FunctionalPtr& functional,
                                                       const PhysicalPtr& physical) const = 0;
    /// FTMS by the calibration mode of the functional constants: 0 and 4 linear, 1 and 5 quadratic. Throws
    /// `std::invalid_argument` for any other.
    virtual TransformatorPtr createTransformatorIcr(const FunctionalPtr& functional,
                                                    const PhysicalPtr& physical) const = 0;
    /// TOF1, with or without temperature compensation: c2 == 0.0 linear, else quadratic.
    virtual TransformatorPtr createTransformatorTof(const FunctionalPtr& functional,
                                                    const PhysicalPtr& physical) const = 0;
    /// TOF2, with or without temperature compensation: c3 != 0.0 cubic, else c2 != 0.0 quadratic, else linear.
    virtual TransformatorPtr createTransformatorTof2(const FunctionalPtr& functional,
                                                     const PhysicalPtr& physical) const = 0;

    /// `inner` with its masses corrected (`ICalibrationTransformatorGPX`); a null `polynomial` corrects nothing. Throws
    /// `std::invalid_argument` for a null `inner`.
    virtual TransformatorPtr createTransformatorGPX(
        const TransformatorPtr& inner, const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) const = 0;

    /// FTMS functional constants by the calibration mode: 0 and 4 of the linear law, which has no alpha and no flag, 1,
    /// 3, 5 and 6 of the quadratic one. `size`, a number of the physical constants, is not looked at. Throws
    /// `std::invalid_argument` for mode 2 and for unknown ones.
    virtual FunctionalPtr createConstantsFunctionalIcr(int calibMode, int ftmsRawMode, int size, bool quadraticFlag,
                                                       double alpha, double beta, double freqHigh) const = 0;

    /// Post-source decay around `tof`, a TOF1 transformator that gives apparent masses; without a polynomial they are
    /// the masses. Throws `std::invalid_argument` "CalibrationTransformatorFactory::createTransformatorPsd: invalid
    /// transformator: type unknown" for a null transformator, and `std::runtime_error` "PSD InitData(): unexpected
    /// error." for numbers that make no law.
    virtual TransformatorPtr createTransformatorPsd(
        const TransformatorPtr& tof,
        const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial) const = 0;

    using Kite2Numbers = Constants::CalibrationPolynomialKITE2::Numbers;

    /// KITE 2 on the time axis of `tof`, a TOF1 transformator. Throws `std::invalid_argument`
    /// "CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial" for null and without
    /// parent polynomials, and `std::runtime_error` for numbers that make no law: "Polynomial has local extrema inside
    /// boundaries.", "Bad global-poly coefficients.", "Parent mass M2 must be greater than M1." and "Kite2 InitData():
    /// unexpected error.".
    virtual TransformatorPtr createTransformatorKite2(const TransformatorPtr& tof,
                                                      const Kite2Numbers& numbers) const = 0;
    /// The same from the numbers of the axis and those that conversions use.
    virtual TransformatorPtr createTransformatorKite2(double timeDelay, double timeBase, double c0, double c1,
                                                      double c2, const std::vector<CCalibPolynomial>& parents,
                                                      const CCalibPolynomial& global, const std::vector<double>& vc0,
                                                      int interpolationMode, double parentMass, double referenceTime,
                                                      int firstIndex, int lastIndex) const = 0;

    using Kite1Numbers = Constants::CalibrationPolynomialKITE1::Numbers;

    /// KITE 1 on the time axis of `tof`, a TOF1 transformator. Throws `std::invalid_argument`
    /// "CalibrationTransformatorFactory::createTransformatorKite: can't create kitePolynomial" for null, and
    /// `std::runtime_error` "Kite1 InitData(): unexpected error." for numbers that make no law.
    virtual TransformatorPtr createTransformatorKite(const TransformatorPtr& tof,
                                                     const Kite1Numbers& numbers) const = 0;
    /// The same from the numbers of the axis and those that conversions use.
    virtual TransformatorPtr createTransformatorKite(double timeDelay, double timeBase, double c0, double c1, double c2,
                                                     double parentMass, double correctionTime,
                                                     const std::vector<double>& coefficients,
                                                     double calibrationParentMass, double calibTimeLow,
                                                     double calibTimeHigh, int firstIndex, int lastIndex) const = 0;

    /// A transformator of the family's law that takes both objects over instead of copying them: constants of that
    /// family which nobody else holds. Throws as the family's operation above.
    virtual TransformatorPtr adoptConstants(CalibrationFamily family, FunctionalPtr&& functional,
                                            PhysicalPtr&& physical) const = 0;
};

}  // namespace kvan::calibration
