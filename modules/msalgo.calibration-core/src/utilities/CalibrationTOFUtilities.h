#pragma once

namespace kvan::calibration::Utilities {

/// Conversions of time-of-flight constants between their stored and their computation form.
class CalibrationTOFUtilities {
public:
    /// C1 = 1e12 / c1; 0.0 gives an infinity.
    static double StoredC1ToComputation(double c1) { return 1e12 / c1; }
    /// The same operation, in the other direction.
    static double ComputationC1ToStored(double c1) { return 1e12 / c1; }
};

}  // namespace kvan::calibration::Utilities
