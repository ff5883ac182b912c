#pragma once

#include "archive_framing.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <memory>

namespace kvan::io::ami {

using TransformatorPtr = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

/// The calibrator inside a reference. False, with `calibrator` null, for a version above 1.0 and for a blob that holds
/// none. Throws what a refused blob or text throws, "Untested code path." and "Shouldn't happen.".
bool DeserializeReferenceCalibrator(Stream& stream, TransformatorPtr& calibrator);

/// Steps over one by the same rules, but for what its blob or text says.
void SkipReferenceCalibrator(Stream& stream);

/// The transformator of a calibration blob; null for a blob that says it holds none.
TransformatorPtr DeserializeBlob(const Bytes& blob);

/// The transformator of a calibration text.
TransformatorPtr DeserializeText(const std::string& text);

/// Refuses a branch that no file is known to take.
[[noreturn]] void ThrowUntestedCodePath();

}  // namespace kvan::io::ami
