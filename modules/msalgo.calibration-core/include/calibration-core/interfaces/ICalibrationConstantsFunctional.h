#pragma once

#include <calibration-core/interfaces/CalibrationFamily.h>
#include <calibration-core/interfaces/ICloneable.h>

#include <iosfwd>

namespace kvan::calibration {

/// The numbers of a law between raw value and mass. Value objects held by counted pointers: a transformator holds and
/// hands out deep copies only. The narrow interfaces below are views that a class of constants offers beside this one:
/// a family's view gives the numbers as stored in a calibration block, a computation view gives them as the law takes
/// them. One thread at a time while a setter runs.
class ICalibrationConstantsFunctional : public ICloneable {
public:
    /// Stored, compared and written along; no law of a time-of-flight instrument, ion trap or line looks at it.
    virtual int GetCalibMode() const = 0;
    /// Throws `std::invalid_argument` in families that know only some modes.
    virtual void SetCalibMode(int mode) = 0;

    /// Whether `other` is of the same family and each number agrees within three double epsilons, relatively.
    virtual bool IsEqual(const ICalibrationConstantsFunctional& other) const = 0;

    /// The code of a `CalibrationFamily`.
    virtual int GetFunctionalTypeCode() const = 0;

    /// Tells FTMS constants that an index offset went into the raw axis; nothing elsewhere.
    virtual void ResetRawMode() = 0;

    /// The line of a transformator's dump.
    virtual void Dump(std::ostream& sink) const = 0;
};

/// C0 and C1 of a law, see `RMLinear`.
class ICalibrationConstantsFunctionalComputationLinear {
public:
    virtual double GetC0() const = 0;
    virtual void SetC0(double value) = 0;
    virtual double GetC1() const = 0;
    virtual void SetC1(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalComputationLinear() = default;
};

/// C2 of a law besides, see `RMQuadratic`.
class ICalibrationConstantsFunctionalComputationQuadratic : public ICalibrationConstantsFunctionalComputationLinear {
public:
    virtual double GetC2() const = 0;
    virtual void SetC2(double value) = 0;
    virtual bool GetQuadraticFlag() const = 0;
    /// A value of the quadratic law that is derived from C1; dumped, used by no formula.
    virtual double GetD() const = 0;

protected:
    ~ICalibrationConstantsFunctionalComputationQuadratic() = default;
};

/// C3 of a law besides, see `RMCubic`.
class ICalibrationConstantsFunctionalComputationCubic : public ICalibrationConstantsFunctionalComputationQuadratic {
public:
    virtual double GetC3() const = 0;
    virtual void SetC3(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalComputationCubic() = default;
};

/// What is added to a mass before a law sees it, see `RMShift`.
class ICalibrationConstantsFunctionalComputationShift {
public:
    virtual double GetShift() const = 0;
    virtual void SetShift(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalComputationShift() = default;
};

/// Numbers of a TOF1 block: c0 in raw units, c1 with C1 = 1e12 / c1, c2 in raw units a mass unit.
class ICalibrationConstantsFunctionalTOF1 {
public:
    virtual double GetStoredC0() const = 0;
    virtual void SetStoredC0(double value) = 0;
    virtual double GetStoredC1() const = 0;
    virtual void SetStoredC1(double value) = 0;
    virtual double GetStoredC2() const = 0;
    virtual void SetStoredC2(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalTOF1() = default;
};

/// Numbers of a TOF2 block: c0 in raw units, c1 with C1 = 1e12 / c1, c2 and c3 in raw units a power of root mass. Its
/// c4 is the shift.
class ICalibrationConstantsFunctionalTOF2 {
public:
    virtual double GetStoredC0() const = 0;
    virtual void SetStoredC0(double value) = 0;
    virtual double GetStoredC1() const = 0;
    virtual void SetStoredC1(double value) = 0;
    virtual double GetStoredC2() const = 0;
    virtual void SetStoredC2(double value) = 0;
    virtual double GetStoredC3() const = 0;
    virtual void SetStoredC3(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalTOF2() = default;
};

/// What both laws of FTMS instruments share.
class ICalibrationConstantsFunctionalFTMS {
public:
    /// 1: the raw axis counts from 0.0, else from the low frequency.
    virtual int GetFTMSRawMode() const = 0;
    virtual void SetFTMSRawMode(int mode) = 0;
    /// Stored and written along; no law looks at it.
    virtual bool GetQuadraticFlag() const = 0;

protected:
    ~ICalibrationConstantsFunctionalFTMS() = default;
};

/// Calibration modes 0 and 4: raw = freqHigh / mass - beta.
class ICalibrationConstantsFunctionalFTMS04 {
public:
    virtual double GetBeta() const = 0;
    virtual void SetBeta(double value) = 0;
    virtual double GetFreqHigh() const = 0;
    virtual void SetFreqHigh(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalFTMS04() = default;
};

/// Calibration modes 1, 3, 5 and 6: raw = alpha / mass^2 + freqHigh / mass + beta.
class ICalibrationConstantsFunctionalFTMS1356 {
public:
    virtual double GetAlpha() const = 0;
    virtual void SetAlpha(double value) = 0;
    virtual double GetBeta() const = 0;
    virtual void SetBeta(double value) = 0;
    virtual double GetFreqHigh() const = 0;
    virtual void SetFreqHigh(double value) = 0;
    virtual void SetQuadraticFlag(bool flag) = 0;

protected:
    ~ICalibrationConstantsFunctionalFTMS1356() = default;
};

/// Numbers of an ion-trap block: mass = (c2 * raw + c1) * raw + c0.
class ICalibrationConstantsFunctionalPaladin {
public:
    virtual double GetStoredC0() const = 0;
    virtual void SetStoredC0(double value) = 0;
    virtual double GetStoredC1() const = 0;
    virtual void SetStoredC1(double value) = 0;
    virtual double GetStoredC2() const = 0;
    virtual void SetStoredC2(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalPaladin() = default;
};

/// Numbers of a linear block: mass = c1 * raw + c0.
class ICalibrationConstantsFunctionalLinear {
public:
    virtual double GetStoredC0() const = 0;
    virtual void SetStoredC0(double value) = 0;
    virtual double GetStoredC1() const = 0;
    virtual void SetStoredC1(double value) = 0;

protected:
    ~ICalibrationConstantsFunctionalLinear() = default;
};

}  // namespace kvan::calibration
