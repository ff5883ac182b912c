#pragma once

#include "transformation/BatchTransformation.h"
#include "transformation/ForwardingTransformator.h"

#include <exception>
#include <functional>
#include <memory>
#include <numeric>
#include <type_traits>

namespace kvan::calibration::Transformation {

/// The law of the wrapper ties mass to the raw value of the transformator inside, whose own law is not used.
struct OnRawValues {
    using Inner = ICalibrationTransformator;
    using Doubles = Inner::Doubles;
    using Indices = Inner::Indices;

    static double FromRaw(const Inner&, double raw) { return raw; }
    static double FromDIndex(const Inner& inner, double index) { return inner.DIndexToRaw(index); }
    static double FromIndex(const Inner& inner, std::int32_t index) { return inner.IndexToRaw(index); }
    static double ToRaw(const Inner&, double value) { return value; }
    static double ToDIndex(const Inner& inner, double value) { return inner.RawToDIndex(value); }
    static std::int32_t ToIndex(const Inner& inner, double value) { return inner.RawToIndex(value); }

    static void FromRaws(const Inner&, const Doubles& raws, Doubles& values) { values = raws; }
    static void FromDIndices(const Inner& inner, const Doubles& indices, Doubles& values) {
        inner.DIndicesToRaws(indices, values);
    }
    static void FromIndices(const Inner& inner, const Indices& indices, Doubles& values) {
        inner.IndicesToRaws(indices, values);
    }
    static void FromIndexRange(const Inner& inner, std::int32_t first, std::size_t count, Doubles& values) {
        resizeForOverwrite(values, count);
        std::iota(values.begin(), values.end(), static_cast<double>(first));
        inner.DIndicesToRaws(values);
    }
    static void ToRaws(const Inner&, Doubles&) {}
    static void ToDIndices(const Inner& inner, Doubles& values) { inner.RawsToDIndices(values); }
    static void ToIndices(const Inner& inner, const Doubles& values, Indices& indices) {
        inner.RawsToIndices(values, indices);
    }
};

/// The law of the wrapper ties mass to the mass that the transformator inside gives.
struct OnMasses {
    using Inner = ICalibrationTransformator;
    using Doubles = Inner::Doubles;
    using Indices = Inner::Indices;

    static double FromRaw(const Inner& inner, double raw) { return inner.RawToMass(raw); }
    static double FromDIndex(const Inner& inner, double index) { return inner.DIndexToMass(index); }
    static double FromIndex(const Inner& inner, std::int32_t index) { return inner.IndexToMass(index); }
    static double ToRaw(const Inner& inner, double value) { return inner.MassToRaw(value); }
    static double ToDIndex(const Inner& inner, double value) { return inner.MassToDIndex(value); }
    static std::int32_t ToIndex(const Inner& inner, double value) { return inner.MassToIndex(value); }

    static void FromRaws(const Inner& inner, const Doubles& raws, Doubles& values) { inner.RawsToMasses(raws, values); }
    static void FromDIndices(const Inner& inner, const Doubles& indices, Doubles& values) {
        inner.DIndicesToMasses(indices, values);
    }
    static void FromIndices(const Inner& inner, const Indices& indices, Doubles& values) {
        inner.IndicesToMasses(indices, values);
    }
    static void FromIndexRange(const Inner& inner, std::int32_t first, std::size_t count, Doubles& values) {
        inner.IndexRangeToMasses(first, static_cast<std::int32_t>(first + static_cast<std::int64_t>(count) - 1),
                                 values);
    }
    static void ToRaws(const Inner& inner, Doubles& values) { inner.MassesToRaws(values); }
    static void ToDIndices(const Inner& inner, Doubles& values) { inner.MassesToDIndices(values); }
    static void ToIndices(const Inner& inner, const Doubles& values, Indices& indices) {
        inner.MassesToIndices(values, indices);
    }
};

/// A transformator whose axis is that of another one inside it. Index, raw value, constants and index offset are the
/// inner one's; mass is tied by a law of `Derived` to the inner raw value or mass, as `Attachment` says.
///
/// `Derived` is the class of the object; it is final and gives
/// - `double FromInner(double value) const`, mass at that value, and `double ToInner(double mass) const`, its inverse,
///   which throw what the law throws and may be called by any number of threads;
/// - `FromInnerCost` and `ToInnerCost`, about how many nanoseconds they take;
/// - a copy constructor that copies deeply, and the operations that are left abstract here.
///
/// It may replace the block forms `FromInnerBlock` and `ToInnerBlock`, which must give the bits of the single forms.
template <class Derived, class Attachment>
class WrappingTransformator : public ForwardingTransformator {
public:
    std::shared_ptr<ICloneable> Clone() const override { return std::make_shared<Derived>(derived()); }

    void MassesToRaws(Doubles& values) const override { MassesToRaws(values, values); }
    void MassesToRaws(const Doubles& masses, Doubles& raws) const override {
        batch(
            masses, raws, [this](double mass) { return MassToRaw(mass); },
            [&] {
                massesToInner(masses, raws);
                Attachment::ToRaws(inner(), raws);
            });
    }
    double MassToRaw(double mass) const override { return Attachment::ToRaw(inner(), derived().ToInner(mass)); }

    void RawsToMasses(Doubles& values) const override { RawsToMasses(values, values); }
    void RawsToMasses(const Doubles& raws, Doubles& masses) const override {
        batch(
            raws, masses, [this](double raw) { return RawToMass(raw); },
            [&] {
                Attachment::FromRaws(inner(), raws, masses);
                innerToMasses(masses);
            });
    }
    double RawToMass(double raw) const override { return derived().FromInner(Attachment::FromRaw(inner(), raw)); }

    void MassesToIndices(const Doubles& masses, Indices& indices) const override {
        batch(
            masses, indices, [this](double mass) { return MassToIndex(mass); },
            [&] {
                Doubles values;
                massesToInner(masses, values);
                Attachment::ToIndices(inner(), values, indices);
            });
    }
    std::int32_t MassToIndex(double mass) const override {
        return Attachment::ToIndex(inner(), derived().ToInner(mass));
    }
    void MassesToDIndices(Doubles& values) const override { MassesToDIndices(values, values); }
    void MassesToDIndices(const Doubles& masses, Doubles& indices) const override {
        batch(
            masses, indices, [this](double mass) { return MassToDIndex(mass); },
            [&] {
                massesToInner(masses, indices);
                Attachment::ToDIndices(inner(), indices);
            });
    }
    double MassToDIndex(double mass) const override { return Attachment::ToDIndex(inner(), derived().ToInner(mass)); }

    void DIndicesToMasses(Doubles& values) const override { DIndicesToMasses(values, values); }
    void DIndicesToMasses(const Doubles& indices, Doubles& masses) const override {
        batch(
            indices, masses, [this](double index) { return DIndexToMass(index); },
            [&] {
                Attachment::FromDIndices(inner(), indices, masses);
                innerToMasses(masses);
            });
    }
    double DIndexToMass(double index) const override {
        return derived().FromInner(Attachment::FromDIndex(inner(), index));
    }
    void IndexRangeToMasses(std::int32_t first, std::int32_t last, Doubles& masses) const override {
        if (last < first)
            throwInvalidRange(first, last);
        const auto count = static_cast<std::size_t>(std::int64_t{last} - first + 1);
        if (count < g_parallelRangeSize)
            return appendRange(first, count, masses);
        if (!insideParallelRegion())
            return wholeRange(first, count, masses);
        try {
            wholeRange(first, count, masses);
        } catch (const std::exception&) {
            appendRange(first, count, masses);
        }
    }
    void IndicesToMasses(const Indices& indices, Doubles& masses) const override {
        batch(
            indices, masses, [this](std::int32_t index) { return IndexToMass(index); },
            [&] {
                Attachment::FromIndices(inner(), indices, masses);
                innerToMasses(masses);
            });
    }
    double IndexToMass(std::int32_t index) const override {
        return derived().FromInner(Attachment::FromIndex(inner(), index));
    }

protected:
    using ForwardingTransformator::ForwardingTransformator;

    /// Converts a block in place; true if an element failed, the elements after it being left as they were.
    bool FromInnerBlock(double* values, std::size_t count) const noexcept {
        return convertEach(values, count, [this](double value) { return derived().FromInner(value); });
    }
    bool ToInnerBlock(double* values, std::size_t count) const noexcept {
        return convertEach(values, count, [this](double mass) { return derived().ToInner(mass); });
    }

private:
    const Derived& derived() const { return static_cast<const Derived&>(*this); }

    template <class Convert>
    static bool convertEach(double* values, std::size_t count, Convert convert) noexcept {
        try {
            for (std::size_t k = 0; k < count; ++k)
                values[k] = convert(values[k]);
            return false;
        } catch (...) {
            return true;
        }
    }

    void innerToMasses(Doubles& values) const {
        convertAll(values, Derived::FromInnerCost,
                   [this](double* block, std::size_t count) { return derived().FromInnerBlock(block, count); });
    }
    void massesToInner(const Doubles& masses, Doubles& values) const {
        if (&masses != &values)
            values = masses;
        convertAll(values, Derived::ToInnerCost,
                   [this](double* block, std::size_t count) { return derived().ToInnerBlock(block, count); });
    }

    template <class Convert>
    static void convertAll(Doubles& values, double cost, Convert convert) {
        double* const data = values.data();
        const auto convertBlock = [&](std::size_t begin, std::size_t end) {
            return convert(data + begin, end - begin);
        };
        if (convertBlocks(values.size(), cost, std::cref(convertBlock)))
            throwTransformationFailed();
    }

    /// `whole` converts everything at once, by a team if it pays, with the text of all laws for a failure; `single` one
    /// element, with the law's own. Inside a parallel region a failure is looked up again, for its text and its place.
    template <class Source, class Destination, class Single, class Whole>
    static void batch(const std::vector<Source>& source, std::vector<Destination>& destination, Single single,
                      Whole whole) {
        if (source.size() < g_parallelBatchSize)
            return convertInSequence(source, destination, single);
        if (!insideParallelRegion())
            return whole();
        const bool inPlace = static_cast<const void*>(&source) == &destination;
        const std::vector<Source> kept = inPlace ? source : std::vector<Source>();
        try {
            whole();
        } catch (const std::exception&) {
            if constexpr (std::is_same_v<Source, Destination>) {
                if (inPlace)
                    destination = kept;
            }
            convertInSequence(source, destination, single);
        }
    }

    template <class Source, class Destination, class Single>
    static void convertInSequence(const std::vector<Source>& source, std::vector<Destination>& destination,
                                  Single single) {
        if (static_cast<const void*>(&source) != &destination)
            destination.assign(source.size(), Destination{});
        for (std::size_t k = 0; k < source.size(); ++k)
            destination[k] = single(source[k]);
    }

    void wholeRange(std::int32_t first, std::size_t count, Doubles& masses) const {
        Attachment::FromIndexRange(inner(), first, count, masses);
        innerToMasses(masses);
    }

    void appendRange(std::int32_t first, std::size_t count, Doubles& masses) const {
        masses.clear();
        masses.reserve(count);
        for (std::size_t k = 0; k < count; ++k)
            masses.push_back(IndexToMass(static_cast<std::int32_t>(first + static_cast<std::int64_t>(k))));
    }
};

}  // namespace kvan::calibration::Transformation
