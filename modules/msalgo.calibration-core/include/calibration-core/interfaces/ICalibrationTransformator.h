#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>
#include <calibration-core/interfaces/IMeasurementModeInfo.h>

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <utility>
#include <vector>

namespace kvan::calibration {

/// A calibration: maps between the three spaces of a measured axis.
///
/// - index: number of a sample in the acquired array, a signed 32-bit integer; a fractional one ("DIndex") is a double;
/// - raw: the instrument's own axis: flight time, frequency, or the raw mass scale of an ion trap;
/// - mass: m/z.
///
/// Index and raw value are tied by raw = (index + IndexOffset) * a1 + a0 with a0 and a1 of the physical constants; raw
/// value and mass by the law of the family with the functional constants. A whole index is made from a fractional one
/// by adding 0.5 and truncating toward zero, where NaN gives 0 and values outside the 32-bit range its ends.
///
/// Made by the factories and shared by counted pointer. Constants and measurement mode go in and come out as deep
/// copies: a change to a copy has no effect until it is set.
///
/// Threads: conversions only read, so any number of threads may convert with one transformator; no thread may run a
/// setter meanwhile.
///
/// Errors: a conversion throws what its law throws, such as the `std::logic_error` "complex valued solution in
/// computation due to invalid calibration constants/value range". Conversions without constants compute with zeros.
///
/// Batches: the forms with two vectors empty and resize the destination to the source's size; source and destination
/// may be the same vector. An empty source returns at once. Below 100 elements, and whenever the caller stands inside
/// a parallel region, elements are converted in order and the law's own exception reaches the caller, with the elements
/// before it converted. From 100 elements on the work may be shared by an OpenMP team, whatever the number of threads a
/// failure is `std::runtime_error` "Transformation failed, most likely due to bad calibration constants.", and then
/// any element may be converted or not. Results have the same bits as the single conversions, for any team.
class ICalibrationTransformator : public ICloneable, public std::enable_shared_from_this<ICalibrationTransformator> {
public:
    using Doubles = std::vector<double>;
    using Indices = std::vector<std::int32_t>;
    /// (lower, upper)
    using Range = std::pair<double, double>;

    /// That of the functional constants; `std::runtime_error` "no functional constants" without them.
    virtual int GetFunctionalTypeCode() const = 0;

    /// Shift of the sample array against the physical axis, in samples; 0.0 at first.
    virtual double GetIndexOffset() const = 0;

    /// A deep copy; null if none are held.
    virtual std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const = 0;
    /// Takes a deep copy; null is ignored. Throws `std::invalid_argument` when the constants do not fit the law; they
    /// are held all the same, while conversions go on with the numbers before.
    virtual void SetFunctionalConstants(const std::shared_ptr<ICalibrationConstantsFunctional>& constants) = 0;
    /// A deep copy; null if none are held.
    virtual std::shared_ptr<ICalibrationConstantsPhysical> GetPhysicalConstants() const = 0;
    /// As `SetFunctionalConstants`.
    virtual void SetPhysicalConstants(const std::shared_ptr<ICalibrationConstantsPhysical>& constants) = 0;
    /// A deep copy; null if none is held.
    virtual std::shared_ptr<IMeasurementModeInfo> GetMeasurementModeInfo() const = 0;
    /// Takes a deep copy; null removes the mode that is held. A transformator that holds one is a reference
    /// calibration.
    virtual void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>& mode) = 0;

    /// That of the functional constants; `std::runtime_error` "no functional constants" without them.
    virtual int GetCalibMode() const = 0;
    /// Forwards to the functional constants, which may refuse with `std::invalid_argument`.
    virtual void SetCalibMode(int mode) = 0;

    /// Whether `other` is of the same class and both pairs of constants are equal. Index offset and measurement mode
    /// are not compared. Throws `std::runtime_error` if either holds no constants.
    virtual bool IsEqual(const ICalibrationTransformator& other) const = 0;

    virtual void SetIndexOffset(double offset) = 0;
    /// Folds the index offset into the physical constants and sets it to 0.0; conversions stay the same but for
    /// rounding.
    virtual void AssimilateIndexOffset() = 0;
    /// Moves the start of the raw axis to the grid point at or just below `rawStart`; `std::runtime_error` "no physical
    /// constants" without them.
    virtual void AdaptRawStart(double rawStart) = 0;

    virtual void MassesToRaws(Doubles& values) const = 0;
    virtual void MassesToRaws(const Doubles& masses, Doubles& raws) const = 0;
    virtual double MassToRaw(double mass) const = 0;
    virtual void RawsToMasses(Doubles& values) const = 0;
    virtual void RawsToMasses(const Doubles& raws, Doubles& masses) const = 0;
    virtual double RawToMass(double raw) const = 0;

    virtual void MassesToIndices(const Doubles& masses, Indices& indices) const = 0;
    virtual std::int32_t MassToIndex(double mass) const = 0;
    virtual void MassesToDIndices(Doubles& values) const = 0;
    virtual void MassesToDIndices(const Doubles& masses, Doubles& indices) const = 0;
    virtual double MassToDIndex(double mass) const = 0;

    virtual void DIndicesToMasses(Doubles& values) const = 0;
    virtual void DIndicesToMasses(const Doubles& indices, Doubles& masses) const = 0;
    virtual double DIndexToMass(double index) const = 0;
    /// Masses of the indices `first` to `last`, both included. Throws `std::invalid_argument` when `last` is less than
    /// `first`. A range has the rules of a batch, with a threshold of 8 elements.
    virtual void IndexRangeToMasses(std::int32_t first, std::int32_t last, Doubles& masses) const = 0;
    virtual void IndicesToMasses(const Indices& indices, Doubles& masses) const = 0;
    virtual double IndexToMass(std::int32_t index) const = 0;

    /// Width in mass of a window of `width` samples centred at `mass`. A window that begins below index 0 slides up.
    virtual double IndexWidthToMassWidth(double mass, double width) const;
    /// Width in samples of a window of `width` mass units centred at `mass`. A window that does not begin above the
    /// mass of index 0 slides to begin there.
    virtual double MassWidthToIndexWidth(double mass, double width) const;

    virtual void IndicesToRaws(const Indices& indices, Doubles& raws) const = 0;
    virtual double IndexToRaw(std::int32_t index) const = 0;
    virtual void DIndicesToRaws(Doubles& values) const = 0;
    virtual void DIndicesToRaws(const Doubles& indices, Doubles& raws) const = 0;
    virtual double DIndexToRaw(double index) const = 0;

    virtual void RawsToIndices(const Doubles& raws, Indices& indices) const = 0;
    virtual std::int32_t RawToIndex(double raw) const = 0;
    virtual void RawsToDIndices(Doubles& values) const = 0;
    virtual void RawsToDIndices(const Doubles& raws, Doubles& indices) const = 0;
    virtual double RawToDIndex(double raw) const = 0;

    /// The greatest interval of mass around `mass` on which `MassToRaw` increases strictly. A family that has none
    /// throws `std::runtime_error` "monotonicMassRange() not yet implemented for this particular transformator.".
    virtual Range monotonicMassRange(double mass) const;
    /// The interval of mass around `mass` on which a mass survives the way to raw and back within `tolerance`. A family
    /// that has none throws `std::runtime_error` as above, under its own name.
    virtual Range usableMassRange(double mass, double tolerance) const;

    /// Class, constants, measurement mode and index offset as text, for logging only.
    virtual void Dump(std::ostream& sink) const = 0;
};

}  // namespace kvan::calibration
