#pragma once

#include "calibration-core/interfaces/ICalibrationTransformatorFactory.h"

namespace kvan::calibration::Transformation {

/// The factory of every family. One instance is shared by the process; more do no harm.
class CalibrationTransformatorFactory final : public ICalibrationTransformatorFactory {
public:
    static const std::shared_ptr<const ICalibrationTransformatorFactory>& instance();

    TransformatorPtr createTransformator(const FunctionalPtr& functional, const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorTrap(const FunctionalPtr& functional,
                                             const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorLinear(const FunctionalPtr& functional,
                                               const PhysicalPtr& physical) const override;
    TransformatorPtr createTransformatorTof(const FunctionalPtr& functional,
                                            const PhysicalPtr& physical) const override;
};

}  // namespace kvan::calibration::Transformation
