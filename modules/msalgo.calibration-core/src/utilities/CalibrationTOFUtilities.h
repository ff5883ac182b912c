#pragma once

#include <calibration-core/interfaces/ICalibrationTOFUtilities.h>

namespace kvan::calibration::Utilities {

/// The one implementation of `ICalibrationTOFUtilities`.
class CalibrationTOFUtilities final : public ICalibrationTOFUtilities {
public:
    static double StoredC1ToComputation(double c1) { return 1e12 / c1; }
    static double ComputationC1ToStored(double c1) { return 1e12 / c1; }

    double C1ToComputationC1(double c1) const override { return StoredC1ToComputation(c1); }
    double ComputationC1ToC1(double computationC1) const override { return ComputationC1ToStored(computationC1); }

    void GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0, double& c1, double& c2,
                               double& c3, double& dm) const override;
    void GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0, double& c1,
                               double& c2) const override;
    void SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1, double c2, double c3,
                               double dm) const override;
    void SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1,
                               double c2) const override;
};

}  // namespace kvan::calibration::Utilities
