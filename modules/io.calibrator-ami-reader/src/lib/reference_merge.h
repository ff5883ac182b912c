#pragma once

#include "DeserializeReferenceCalibrator.h"

namespace kvan::io::ami {

/// The calibrator of a spectrum with the law of `reference` on the axis of its own: physical constants, index offset
/// and bounds stay. Where both know temperatures, the law is adapted to those of the spectrum. Null if the reference is
/// of a kind that cannot be applied to `calibrator`.
TransformatorPtr mergeReference(const TransformatorPtr& calibrator, const TransformatorPtr& reference);

}  // namespace kvan::io::ami
