#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <memory>
#include <string>
#include <vector>

namespace kvan::calibration {

/// Reads and writes transformators in their stored form (docs/calibration-blobs.md). Stateless: any thread at any time.
class ICalibrationTransformatorFactorySerialization {
public:
    virtual ~ICalibrationTransformatorFactorySerialization() = default;

    /// The transformator of a calibration blob. Null for no bytes at all, for type 255 ("no transformator") and for
    /// types that no family has. Throws `std::runtime_error` for bytes that end too early, a damaged part, or numbers
    /// that make no law, and `std::invalid_argument` for constants that the factory refuses.
    virtual std::shared_ptr<ICalibrationTransformator> DeserializeFromBlob(
        const std::vector<unsigned char>& blob) const = 0;

    /// Replaces the bytes of `blob` by the transformator's; null writes FF 00 00 00. The index offset has no place in a
    /// blob. Throws `std::logic_error` for a transformator that holds a measurement mode, `std::invalid_argument` for
    /// one without constants or without a stored form.
    virtual void SerializeToBlob(const std::shared_ptr<ICalibrationTransformator>& transformator,
                                 std::vector<unsigned char>& blob) const = 0;

    /// As `SerializeToBlob`, in the reference form: the block is followed by the measurement mode, which the
    /// transformator must hold, else `std::logic_error`. Throws `std::runtime_error` "Invalid reference calibrator:
    /// ..." for compensated constants without temperatures or factors.
    virtual void SerializeReferenceToBlob(const std::shared_ptr<ICalibrationTransformator>& transformator,
                                          std::vector<unsigned char>& blob) const = 0;

    /// The transformator of a calibration text (docs/calibration-text.md); never null. Throws `std::runtime_error` for
    /// a text that is damaged, of an unknown version or strategy, or of numbers that make no law, and
    /// `std::invalid_argument` for constants that the factory refuses.
    virtual std::shared_ptr<ICalibrationTransformator> DeserializeFromString(const std::string& text) const = 0;

    /// The text of the transformator, in the newest version. The measurement mode has no place in it, nor has the
    /// temperature compensation of TOF1 constants, which is dropped with a WARN line; the index offset is rounded.
    /// Throws `std::invalid_argument` for null and for a transformator without constants or without a stored form.
    virtual std::string SerializeToString(const std::shared_ptr<ICalibrationTransformator>& transformator) const = 0;
};

}  // namespace kvan::calibration
