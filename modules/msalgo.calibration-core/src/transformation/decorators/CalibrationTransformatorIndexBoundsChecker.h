#pragma once

#include "transformation/decorators/BoundsChecker.h"
#include "utilities/IndexTruncation.h"

namespace kvan::calibration::Transformation {

/// Bounds the index of a single mass or raw value. Batches, and masses of indices outside the bounds, are forwarded: a
/// range of indices in a stored calibration does not cut an array.
class CalibrationTransformatorIndexBoundsChecker final
    : public BoundsChecker<CalibrationTransformatorIndexBoundsChecker, ICalibrationTransformatorIndexBoundsChecker> {
    using Base = BoundsChecker<CalibrationTransformatorIndexBoundsChecker, ICalibrationTransformatorIndexBoundsChecker>;

public:
    static constexpr const char* ClassName = "CalibrationTransformatorIndexBoundsChecker";
    static constexpr const char* BoundsName = "index bounds";

    CalibrationTransformatorIndexBoundsChecker(const std::shared_ptr<ICalibrationTransformator>& inner, double lower,
                                               double upper)
        : Base(inner, lower, upper) {}

    double GetLowerIndexBound() const override { return lower(); }
    void SetLowerIndexBound(double bound) override { setLower(bound); }
    double GetUpperIndexBound() const override { return upper(); }
    void SetUpperIndexBound(double bound) override { setUpper(bound); }

    double MassToDIndex(double mass) const override { return clip(inner().MassToDIndex(mass)); }
    std::int32_t MassToIndex(double mass) const override {
        return Utilities::truncateToIndex(MassToDIndex(mass) + 0.5);
    }
    double RawToDIndex(double raw) const override { return clip(inner().RawToDIndex(raw)); }
    std::int32_t RawToIndex(double raw) const override {
        return std::min(Utilities::truncateToIndex(upper()),
                        std::max(Utilities::truncateToIndex(lower()), inner().RawToIndex(raw)));
    }
};

}  // namespace kvan::calibration::Transformation
