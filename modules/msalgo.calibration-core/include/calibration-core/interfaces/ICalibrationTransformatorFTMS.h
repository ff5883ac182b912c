#pragma once

namespace kvan::calibration {

/// Facet of the Fourier transform family, by which it is known from others.
class ICalibrationTransformatorFTMS {
public:
    virtual ~ICalibrationTransformatorFTMS() = default;
};

/// Of its quadratic laws.
class ICalibrationTransformatorFTMSQuadratic : public ICalibrationTransformatorFTMS {};

}  // namespace kvan::calibration
