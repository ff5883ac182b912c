#pragma once

#include <calibration-core/interfaces/ICloneable.h>

#include <iosfwd>

namespace kvan::calibration {

/// The numbers of the line between index and raw value, raw = (index + index offset) * a1 + a0. Value objects, held and
/// handed out as deep copies like the functional ones.
class ICalibrationConstantsPhysical : public ICloneable {
public:
    /// Whether `other` is of the same family and each number agrees within three double epsilons, relatively.
    virtual bool IsEqual(const ICalibrationConstantsPhysical& other) const = 0;

    /// Moves the start of the raw axis to the grid point at or just below `rawStart`.
    virtual void AdaptRawStart(double rawStart) = 0;

    /// Moves the start of the raw axis by `indexOffset` samples.
    virtual void AssimilateIndexOffset(double indexOffset) = 0;

    /// The line of a transformator's dump.
    virtual void Dump(std::ostream& sink) const = 0;
};

/// a0 and a1 of the line, which every family derives from its own numbers.
class ICalibrationConstantsPhysicalLinear {
public:
    /// Raw value of index 0.
    virtual double GetA0() const = 0;
    /// Raw units a sample.
    virtual double GetA1() const = 0;

protected:
    ~ICalibrationConstantsPhysicalLinear() = default;
};

/// Flight time of the first sample, and time from one sample to the next, in one unit.
class ICalibrationConstantsPhysicalTOF {
public:
    virtual double GetTimeDelay() const = 0;
    virtual void SetTimeDelay(double delay) = 0;
    virtual double GetTimeBase() const = 0;
    virtual void SetTimeBase(double base) = 0;

protected:
    ~ICalibrationConstantsPhysicalTOF() = default;
};

/// Start of the raw mass scale, counted in measurements, and measurements a unit of raw mass.
class ICalibrationConstantsPhysicalPaladin {
public:
    virtual double GetBeginRawMass() const = 0;
    virtual void SetBeginRawMass(double begin) = 0;
    virtual double GetMeasurementsPerRawMass() const = 0;
    virtual void SetMeasurementsPerRawMass(double count) = 0;

protected:
    ~ICalibrationConstantsPhysicalPaladin() = default;
};

/// Frequency axis of an FTMS instrument, which runs downward. Calibration mode and raw mode follow the functional
/// constants as soon as a transformator holds both.
class ICalibrationConstantsPhysicalFTMS {
public:
    /// 0 to 6.
    virtual int GetCalibMode() const = 0;
    virtual void SetCalibMode(int mode) = 0;
    virtual int GetFTMSRawMode() const = 0;
    virtual void SetFTMSRawMode(int mode) = 0;
    virtual double GetFreqLow() const = 0;
    virtual void SetFreqLow(double frequency) = 0;
    virtual double GetFreqWidth() const = 0;
    virtual void SetFreqWidth(double width) = 0;
    /// Data points of the axis.
    virtual int GetSize() const = 0;
    virtual void SetSize(int size) = 0;

protected:
    ~ICalibrationConstantsPhysicalFTMS() = default;
};

}  // namespace kvan::calibration
