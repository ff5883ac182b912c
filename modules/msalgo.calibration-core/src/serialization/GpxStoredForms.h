#pragma once

#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "serialization/CalibrationTextTokens.h"

#include <calibration-core/interfaces/ICalibrationPolynomialGPX.h>

#include <string>

namespace kvan::calibration {

/// Correction data in blobs and texts.
class GpxStoredForms {
public:
    using PolynomialPtr = std::shared_ptr<ICalibrationPolynomialGPX>;

    /// Reads from the position of `access` on.
    static PolynomialPtr ReadBlob(tqclegacy::CALIBRATION::CalibBlobReadAccess& access);
    /// Throws `std::invalid_argument` for more than 65535 coefficients.
    static void WriteBlob(const ICalibrationPolynomialGPX& polynomial,
                          tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);

    /// Throws `std::runtime_error` "...DeserializeFromString: failed to create gpxTransformator" or "vector
    /// deserialization".
    static PolynomialPtr ReadText(CalibrationTextReader& reader);
    /// After a blank. A polynomial without anything in it stands for no correction.
    static void AppendText(const ICalibrationPolynomialGPX& polynomial, std::string& text);
};

}  // namespace kvan::calibration
