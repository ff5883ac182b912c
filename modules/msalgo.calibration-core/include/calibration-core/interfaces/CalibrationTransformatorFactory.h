#pragma once

#include <calibration-core/interfaces/ICalibrationTransformatorFactory.h>

namespace kvan::calibration::Transformation {

/// The factory of every family. One instance is shared by the process; more do no harm.
class CalibrationTransformatorFactory final : public ICalibrationTransformatorFactory {
public:
    static const std::shared_ptr<const ICalibrationTransformatorFactory>& instance();

    TransformatorPtr createTransformator(const FunctionalPtr& functional, const PhysicalPtr& physical) const override;
    TransformatorPtr createDecoratedTransformator(Decorator kind, const TransformatorPtr& inner, double lower,
                                                  double upper) const override;
    TransformatorPtr createTransformatorTrap(const FunctionalPtr& functional,
                                             const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorLinear(const FunctionalPtr& functional,
                                               const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorIcr(const FunctionalPtr& functional,
                                            const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorTof(const FunctionalPtr& functional,
                                            const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorTof2(const FunctionalPtr& functional,
                                             const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorGPX(
        const TransformatorPtr& inner, const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) const override;
    FunctionalPtr createConstantsFunctionalIcr(int calibMode, int ftmsRawMode, int size, bool quadraticFlag,
                                               double alpha, double beta, double freqHigh) const override;
    TransformatorPtr createTransformatorPsd(
        const TransformatorPtr& tof,
        const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial) const override;
    TransformatorPtr createTransformatorKite2(const TransformatorPtr& tof, const Kite2Numbers& numbers) const override;
    TransformatorPtr createTransformatorKite2(double timeDelay, double timeBase, double c0, double c1, double c2,
                                              const std::vector<CCalibPolynomial>& parents,
                                              const CCalibPolynomial& global, const std::vector<double>& vc0,
                                              int interpolationMode, double parentMass, double referenceTime,
                                              int firstIndex, int lastIndex) const override;
    TransformatorPtr createTransformatorKite(const TransformatorPtr& tof, const Kite1Numbers& numbers) const override;
    TransformatorPtr createTransformatorKite(double timeDelay, double timeBase, double c0, double c1, double c2,
                                             double parentMass, double correctionTime,
                                             const std::vector<double>& coefficients, double calibrationParentMass,
                                             double calibTimeLow, double calibTimeHigh, int firstIndex,
                                             int lastIndex) const override;
    TransformatorPtr adoptConstants(CalibrationFamily family, FunctionalPtr&& functional,
                                    PhysicalPtr&& physical) const override;
};

}  // namespace kvan::calibration::Transformation
