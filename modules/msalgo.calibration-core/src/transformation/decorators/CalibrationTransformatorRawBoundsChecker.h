#pragma once

#include "transformation/decorators/BoundsChecker.h"

namespace kvan::calibration::Transformation {

/// Bounds the raw value of a mass, and the raw value that a mass is asked for. All batches with raw values at one side
/// are bounded there, also where the single conversion, between raw value and index, is only forwarded.
class CalibrationTransformatorRawBoundsChecker final
    : public BoundsChecker<CalibrationTransformatorRawBoundsChecker, ICalibrationTransformatorRawBoundsChecker> {
    using Base = BoundsChecker<CalibrationTransformatorRawBoundsChecker, ICalibrationTransformatorRawBoundsChecker>;

public:
    static constexpr const char* ClassName = "CalibrationTransformatorRawBoundsChecker";
    static constexpr const char* BoundsName = "raw bounds";

    CalibrationTransformatorRawBoundsChecker(const std::shared_ptr<ICalibrationTransformator>& inner, double lower,
                                             double upper)
        : Base(inner, lower, upper) {}

    double GetLowerRawBound() const override { return lower(); }
    void SetLowerRawBound(double bound) override { setLower(bound); }
    double GetUpperRawBound() const override { return upper(); }
    void SetUpperRawBound(double bound) override { setUpper(bound); }

    double MassToRaw(double mass) const override { return clip(inner().MassToRaw(mass)); }
    double RawToMass(double raw) const override { return inner().RawToMass(clip(raw)); }

    void MassesToRaws(Doubles& values) const override {
        inner().MassesToRaws(values);
        clipAll(values);
    }
    void MassesToRaws(const Doubles& masses, Doubles& raws) const override {
        inner().MassesToRaws(masses, raws);
        clipAll(raws);
    }
    void IndicesToRaws(const Indices& indices, Doubles& raws) const override {
        inner().IndicesToRaws(indices, raws);
        clipAll(raws);
    }
    void DIndicesToRaws(Doubles& values) const override {
        inner().DIndicesToRaws(values);
        clipAll(values);
    }
    void DIndicesToRaws(const Doubles& indices, Doubles& raws) const override {
        inner().DIndicesToRaws(indices, raws);
        clipAll(raws);
    }

    void RawsToMasses(Doubles& values) const override {
        clipAll(values);
        inner().RawsToMasses(values);
    }
    void RawsToMasses(const Doubles& raws, Doubles& masses) const override {
        masses = raws;
        RawsToMasses(masses);
    }
    void RawsToIndices(const Doubles& raws, Indices& indices) const override {
        Doubles clipped = raws;
        clipAll(clipped);
        inner().RawsToIndices(clipped, indices);
    }
    void RawsToDIndices(Doubles& values) const override {
        clipAll(values);
        inner().RawsToDIndices(values);
    }
    void RawsToDIndices(const Doubles& raws, Doubles& indices) const override {
        indices = raws;
        RawsToDIndices(indices);
    }

private:
    void clipAll(Doubles& raws) const {
        for (double& raw : raws)
            raw = clip(raw);
    }
};

}  // namespace kvan::calibration::Transformation
