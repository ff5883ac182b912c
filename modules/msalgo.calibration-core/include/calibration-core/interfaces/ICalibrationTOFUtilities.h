#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <memory>

namespace kvan::calibration {

/// The constants of time-of-flight calibrations. Stateless: any thread at any time.
class ICalibrationTOFUtilities {
public:
    virtual ~ICalibrationTOFUtilities() = default;

    /// C1 = 1e12 / c1; 0.0 gives an infinity.
    virtual double C1ToComputationC1(double c1) const = 0;
    /// The same operation, in the other direction.
    virtual double ComputationC1ToC1(double computationC1) const = 0;

    /// c0 to c3 as stored and `dm`, the shift of mass, of TOF2 constants. Throws `std::invalid_argument` for any other
    /// family, as do the following.
    virtual void GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0, double& c1,
                                       double& c2, double& c3, double& dm) const = 0;
    /// Of TOF1 constants.
    virtual void GetMainCalibConstants(const ICalibrationTransformator& transformator, double& c0, double& c1,
                                       double& c2) const = 0;
    /// The reverse: everything else of the functional constants stays, and so does the class of the transformator; a
    /// coefficient above its degree is held without effect.
    virtual void SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1, double c2,
                                       double c3, double dm) const = 0;
    virtual void SetMainCalibConstants(ICalibrationTransformator& transformator, double c0, double c1,
                                       double c2) const = 0;
};

/// A fresh one.
std::shared_ptr<ICalibrationTOFUtilities> createCalibrationTOFUtilities();

}  // namespace kvan::calibration
