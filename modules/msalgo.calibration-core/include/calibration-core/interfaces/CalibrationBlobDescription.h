#pragma once

#include <calibration-core/interfaces/CalibrationFamily.h>

#include <optional>
#include <string_view>
#include <vector>

namespace kvan::calibration {

/// What kind of calibration a blob holds. A plain value.
struct CalibrationBlobDescription {
    /// Of the law, where its family leaves it open.
    enum class Degree { Fixed, Linear, Quadratic, Cubic };

    CalibrationFamily family = CalibrationFamily::Linear;  ///< says also whether temperatures are compensated
    std::string_view familyName = {};  ///< in words, as "time of flight"; lives as long as the program
    Degree degree = Degree::Fixed;
    bool hasMassCorrection = false;  ///< by a polynomial around the law (GPX)

    friend bool operator==(const CalibrationBlobDescription&, const CalibrationBlobDescription&) = default;
};

/// Says what `CalibrationTransformatorFactorySerialization::DeserializeFromBlob` would make of the blob, without making
/// it: only the head records are read, so that a run of a million blobs can be looked through. Nothing for a blob that
/// holds no calibration or ends within these records. A blob whose arrays are damaged is described all the same.
/// Throws nothing but `std::bad_alloc`.
std::optional<CalibrationBlobDescription> describeBlob(const std::vector<unsigned char>& blob);

}  // namespace kvan::calibration
