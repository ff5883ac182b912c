#pragma once

#include "transformation/WrappingTransformator.h"

#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <math-functions/function.h>

#include <optional>

namespace kvan::calibration::Transformation {

class CalibrationTransformatorGPX;

/// The precise masses of a block of apparent ones, in place; true if one has none. Goes through a chunk with vectors
/// and only where the first order is not near enough mass by mass.
struct ApparentMassToMassTransformFunctor {
    const CalibrationTransformatorGPX& gpx;

    bool operator()(double* values, std::size_t count) const noexcept;
};

/// mass = G^-1(mass of the transformator inside).
class CalibrationTransformatorGPX final : public WrappingTransformator<CalibrationTransformatorGPX, OnMasses>,
                                          public ICalibrationTransformatorGPX {
    using Base = WrappingTransformator<CalibrationTransformatorGPX, OnMasses>;

public:
    using Doubles = ICalibrationTransformator::Doubles;

    static constexpr double FromInnerCost = 2.0;
    static constexpr double ToInnerCost = 0.7;

    CalibrationTransformatorGPX(const std::shared_ptr<ICalibrationTransformator>& inner,
                                const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial);
    CalibrationTransformatorGPX(const CalibrationTransformatorGPX& other);

    double FromInner(double mass) const { return MassToPreciseMassImpl(mass); }
    double ToInner(double mass) const { return PreciseMassToMass(mass); }
    bool FromInnerBlock(double* values, std::size_t count) const noexcept {
        return ApparentMassToMassTransformFunctor{*this}(values, count);
    }
    bool ToInnerBlock(double* values, std::size_t count) const noexcept;

    std::shared_ptr<ICalibrationTransformator> GetTransformator() const override;
    void SetTransformator(const std::shared_ptr<ICalibrationTransformator>& transformator) override;
    std::shared_ptr<ICalibrationPolynomialGPX> GetPolynomial() const override { return cloneObject(m_polynomial); }
    void SetPolynomial(const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) override;

    double PreciseMassToMass(double mass) const override;
    double MassToPreciseMass(double mass) const override { return MassToPreciseMassImpl(mass); }
    void PreciseMassesToMasses(Doubles& masses) const override;
    void PreciseMassesToMasses(const Doubles& preciseMasses, Doubles& masses) const override;
    void MassesToPreciseMasses(Doubles& masses) const override;
    void MassesToPreciseMasses(const Doubles& masses, Doubles& preciseMasses) const override;

    bool IsEqual(const ICalibrationTransformator& other) const override;
    void Dump(std::ostream& sink) const override;

private:
    friend struct ApparentMassToMassTransformFunctor;

    double MassToPreciseMassImpl(double mass) const;
    /// The inverse around `mass` where the first order is not near enough; nothing if there is none, and
    /// for a polynomial that is beyond a search: it would take hours for an array.
    std::optional<double> search(double mass) const noexcept;

    std::shared_ptr<ICalibrationPolynomialGPX> m_polynomial;
    math::CFunction m_apparentMass;  // without a strategy where nothing is corrected
    double m_searchWidth = 0.0;
};

}  // namespace kvan::calibration::Transformation
