#pragma once

#include <cstdint>

namespace kvan::tqclegacy::CALIBRATION {
class CalibBlobWriteAccess;
}

namespace kvan::calibration {

/// What a blob holds behind its head: the block alone, or the block with the measurement mode of a reference.
enum class BlobForm { Plain, Reference };

/// Facet of a transformator that has a stored form.
class ICalibSerialization {
public:
    virtual ~ICalibSerialization() = default;

    /// The type in the head of a blob. Throws `std::invalid_argument` for a form that the family does not have.
    virtual std::uint16_t GetBlobType(BlobForm form) const = 0;

    /// Whether correction data follow the block.
    virtual bool HasGpxData() const { return false; }

    /// Writes the block of that type, and the correction data if there are some. Throws `std::invalid_argument` when
    /// constants are missing or of another family.
    virtual void SerializeToBlob(BlobForm form, tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) const = 0;

protected:
    ICalibSerialization() = default;
    ICalibSerialization(const ICalibSerialization&) = default;
};

}  // namespace kvan::calibration
