#pragma once

#include "serialization/ICalibSerialization.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration {

/// Stored form of the TOF1 laws. Compensated constants with one value have blocks of their own; with several the plain
/// block is written, and the values follow as an extension.
struct TofStoredForm {
    static std::uint16_t Type(const ICalibrationTransformator& transformator, BlobForm form);
    static void Write(const ICalibrationTransformator& transformator, BlobForm form,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
};

/// Stored form of the TOF2 laws: compensated constants have blocks of their own for any number of values.
struct Tof2StoredForm {
    static std::uint16_t Type(const ICalibrationTransformator& transformator, BlobForm form);
    static void Write(const ICalibrationTransformator& transformator, BlobForm form,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
};

}  // namespace kvan::calibration
