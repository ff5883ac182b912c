#pragma once

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>

#include <cstdlib>
#include <limits>
#include <stdexcept>

/// What holds for any calibration that was accepted, whatever its numbers are.
namespace fuzz {

using kvan::calibration::ICalibrationTransformator;
using Serialization = kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization;
using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

/// Runs `work`; the failures of calibrations are passed over.
template <class Work>
bool succeeds(Work work) {
    try {
        work();
        return true;
    } catch (const std::logic_error&) {
    } catch (const std::runtime_error&) {
    }
    return false;
}

inline void convert(const ICalibrationTransformator& transformator) {
    std::vector<double> masses;
    for (const std::int32_t last : {3, 300})
        succeeds([&] {
            transformator.IndexRangeToMasses(-2, last, masses);
            transformator.MassesToDIndices(masses);
            transformator.IndexWidthToMassWidth(500.0, 10.0);
        });
    for (const double mass : {-1.0, 500.0, 1e6})
        succeeds([&] {
            transformator.MassToIndex(mass);
            transformator.RawToIndex(transformator.MassToRaw(mass));
            transformator.RawToMass(mass);
        });
    succeeds([&] { transformator.monotonicMassRange(500.0); });
    for (const double tolerance : {0.0, 0.01})
        succeeds([&] { transformator.usableMassRange(500.0, tolerance); });
}

/// A correction of masses that is kept without being used.
inline bool holdsUnusedCorrection(const ICalibrationTransformator& transformator) {
    const auto* const facet = dynamic_cast<const kvan::calibration::ICalibrationTransformatorGPX*>(&transformator);
    const auto polynomial = facet != nullptr ? facet->GetPolynomial() : nullptr;
    return polynomial && !polynomial->GetUse();
}

/// But for the index offset, whose rounding moves negative ones. Not for compensated TOF1 constants, which lose their
/// compensation with a line of the log, nor for post-source decay without a polynomial, which has no text. A correction
/// that is not used is written and not read.
inline void keepItsText(const Serialization& serialization, const TransformatorPtr& transformator) {
    constexpr int compensatedTof1 = 9;
    if (transformator->GetFunctionalTypeCode() == compensatedTof1)
        return;
    transformator->SetIndexOffset(0.0);
    std::string text;
    if (!succeeds([&] { text = serialization.SerializeToString(transformator); }))
        return;
    const auto again = serialization.DeserializeFromString(text);
    if (!holdsUnusedCorrection(*transformator) && serialization.SerializeToString(again) != text)
        std::abort();
}

inline std::vector<unsigned char> blobOf(const Serialization& serialization, const TransformatorPtr& transformator) {
    std::vector<unsigned char> blob;
    if (transformator->GetMeasurementModeInfo())
        serialization.SerializeReferenceToBlob(transformator, blob);
    else
        serialization.SerializeToBlob(transformator, blob);
    return blob;
}

/// A reference with temperatures or factors alone is read, but not written.
inline void keepItsBlob(const Serialization& serialization, const TransformatorPtr& transformator) {
    std::vector<unsigned char> blob;
    if (succeeds([&] { blob = blobOf(serialization, transformator); }) &&
        blobOf(serialization, serialization.DeserializeFromBlob(blob)) != blob)
        std::abort();
}

}  // namespace fuzz
