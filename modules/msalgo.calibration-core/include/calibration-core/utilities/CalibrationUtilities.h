#pragma once

#include "calibration-core/interfaces/ICalibrationTransformator.h"

namespace kvan::calibration::Utilities {

/// The constants of a time-of-flight calibration as stored; `dm` is c4, the shift of mass.
struct MainCalibConstants {
    double c0 = 0.0;
    double c1 = 1.0;
    double c2 = 0.0;
    double c3 = 0.0;
    double dm = 0.0;
};

/// All five of TOF2 constants. Throws `std::invalid_argument` for any other family.
MainCalibConstants GetMainCalibConstantsTOF2(const ICalibrationTransformator& transformator);
/// c0 to c2 of TOF1 constants; the others stay 0.0. Throws `std::invalid_argument` for any other family.
MainCalibConstants GetMainCalibConstantsTOF1(const ICalibrationTransformator& transformator);
/// The reverse: everything else of the functional constants stays. The class of the transformator stays too: a
/// coefficient above its degree is held without effect.
void SetMainCalibConstantsTOF2(ICalibrationTransformator& transformator, const MainCalibConstants& constants);
void SetMainCalibConstantsTOF1(ICalibrationTransformator& transformator, const MainCalibConstants& constants);

/// Deviation of the mass at `raw` from `referenceMass`, (mass - reference) / reference in parts per million; 0.0 for a
/// reference that is not positive.
double MassErrorPpm(const ICalibrationTransformator& transformator, double raw, double referenceMass);
/// The same for each pair, up to the end of the shorter vector.
std::vector<double> MassErrorsPpm(const ICalibrationTransformator& transformator, const std::vector<double>& raws,
                                  const std::vector<double>& referenceMasses);

enum class MassErrorUnit { Mass, Ppm };

/// Over the errors reference - mass, or that a reference in parts per million, of each pair up to the end of the
/// shorter vector; an error is 0.0 where the reference is not positive.
struct MassErrorStatistics {
    double rootMeanSquare = 0.0;     ///< 0.0 without pairs
    double standardDeviation = 0.0;  ///< about the mean of the errors, by count - 1; 0.0 below two pairs
};
MassErrorStatistics MassErrors(const ICalibrationTransformator& transformator, const std::vector<double>& raws,
                               const std::vector<double>& referenceMasses, MassErrorUnit unit);

}  // namespace kvan::calibration::Utilities
