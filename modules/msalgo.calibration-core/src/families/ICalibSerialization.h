#pragma once

#include <calibration-core/interfaces/CalibrationFamily.h>

namespace kvan::calibration {

/// Facet of a transformator that has a stored form: it names the family whose blobs and texts hold it, whatever
/// constants it was given. What stands around another transformator has none of its own.
class ICalibSerialization {
public:
    virtual ~ICalibSerialization() = default;

    virtual CalibrationFamily GetStoredFamily() const = 0;

protected:
    ICalibSerialization() = default;
    ICalibSerialization(const ICalibSerialization&) = default;
};

}  // namespace kvan::calibration
