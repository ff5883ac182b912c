#pragma once

namespace kvan::calibration {

class CalibrationTextWriter;

/// Facet of a transformator that writes its prefix and constants into a text by itself, since they are more than the
/// two pairs of constants that it gives.
class ICalibTextSerialization {
public:
    virtual ~ICalibTextSerialization() = default;

    /// Throws `std::invalid_argument` when something is missing that a text must hold.
    virtual void SerializeDataToString(CalibrationTextWriter& writer) const = 0;

protected:
    ICalibTextSerialization() = default;
    ICalibTextSerialization(const ICalibTextSerialization&) = default;
};

}  // namespace kvan::calibration
