#pragma once

#include "families/CalibrationFamilies.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration {

/// Reads the extension that stands at the position of `access` up to the end of the blob, in the words of a plain or a
/// reference blob, and gives `transformator` with the temperature compensation it holds. Throws `std::runtime_error`
/// for anything but exactly one info and one block.
std::shared_ptr<ICalibrationTransformator> DeserializeExtension(
    const std::shared_ptr<ICalibrationTransformator>& transformator, BlobForm form,
    tqclegacy::CALIBRATION::CalibBlobReadAccess& access);

/// Writes the extension of a blob of that form, if the transformator needs one: compensated TOF1 constants with more
/// values than their block holds.
void SerializeExtension(const ICalibrationTransformator& transformator, BlobForm form,
                        tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);

/// A copy of the functional constants, if they are compensated ones; else null.
std::shared_ptr<ICalibrationConstantsFunctionalTemperatureCompensation> compensationOf(
    const ICalibrationTransformator& transformator);

/// Throws `std::runtime_error` "Invalid reference calibrator: no temperatures" or "... no correction factors".
void requireReferenceData(const ICalibrationConstantsFunctionalTemperatureCompensation& compensation);

/// False if there are neither temperatures nor factors; throws as `requireReferenceData` if only one is there.
bool holdsReferenceData(const ICalibrationConstantsFunctionalTemperatureCompensation& compensation);

}  // namespace kvan::calibration
