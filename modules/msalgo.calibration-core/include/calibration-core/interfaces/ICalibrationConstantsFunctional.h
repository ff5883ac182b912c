#pragma once

#include "calibration-core/interfaces/ICloneable.h"

#include <iosfwd>

namespace kvan::calibration {

/// The numbers of a law between raw value and mass. Value objects behind counted pointers: a transformator holds and
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

    /// 1 TOF1, 2 Paladin, 3 FTMS, 4 Linear, 6 PSD, 7 KITE1, 9 TOF1 and 13 TOF2 with temperature compensation, 10 KITE2,
    /// 12 TOF2.
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
