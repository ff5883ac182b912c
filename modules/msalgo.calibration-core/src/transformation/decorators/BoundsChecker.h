#pragma once

#include "transformation/ForwardingTransformator.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>

#include <algorithm>
#include <ostream>

namespace kvan::calibration::Transformation {

/// A transformator that forwards all to the one inside, for `Derived` to override what it bounds. `Derived` is the
/// final class of the object and gives `ClassName` and `BoundsName`, its words in dumps; `Facet` is what it offers.
template <class Derived, class Facet>
class BoundsChecker : public ForwardingTransformator, public Facet {
public:
    std::shared_ptr<ICloneable> Clone() const override { return std::make_shared<Derived>(derived()); }

    std::shared_ptr<ICalibrationTransformator> GetDecoratedTransformator() const final {
        return std::dynamic_pointer_cast<ICalibrationTransformator>(inner().Clone());
    }
    void SetDecoratedTransformator(const std::shared_ptr<ICalibrationTransformator>& transformator) final {
        if (transformator)
            setInner(transformator);
    }

    bool IsEqual(const ICalibrationTransformator& other) const override {
        const auto* const same = dynamic_cast<const Derived*>(&other);
        return same != nullptr && Utilities::relativelyEqual(m_lower, same->lower()) &&
               Utilities::relativelyEqual(m_upper, same->upper()) && inner().IsEqual(same->inner());
    }

    void MassesToRaws(Doubles& values) const override { inner().MassesToRaws(values); }
    void MassesToRaws(const Doubles& masses, Doubles& raws) const override { inner().MassesToRaws(masses, raws); }
    double MassToRaw(double mass) const override { return inner().MassToRaw(mass); }
    void RawsToMasses(Doubles& values) const override { inner().RawsToMasses(values); }
    void RawsToMasses(const Doubles& raws, Doubles& masses) const override { inner().RawsToMasses(raws, masses); }
    double RawToMass(double raw) const override { return inner().RawToMass(raw); }
    void MassesToIndices(const Doubles& masses, Indices& indices) const override {
        inner().MassesToIndices(masses, indices);
    }
    std::int32_t MassToIndex(double mass) const override { return inner().MassToIndex(mass); }
    void MassesToDIndices(Doubles& values) const override { inner().MassesToDIndices(values); }
    void MassesToDIndices(const Doubles& masses, Doubles& indices) const override {
        inner().MassesToDIndices(masses, indices);
    }
    double MassToDIndex(double mass) const override { return inner().MassToDIndex(mass); }
    void DIndicesToMasses(Doubles& values) const override { inner().DIndicesToMasses(values); }
    void DIndicesToMasses(const Doubles& indices, Doubles& masses) const override {
        inner().DIndicesToMasses(indices, masses);
    }
    double DIndexToMass(double index) const override { return inner().DIndexToMass(index); }
    void IndexRangeToMasses(std::int32_t first, std::int32_t last, Doubles& masses) const override {
        inner().IndexRangeToMasses(first, last, masses);
    }
    void IndicesToMasses(const Indices& indices, Doubles& masses) const override {
        inner().IndicesToMasses(indices, masses);
    }
    double IndexToMass(std::int32_t index) const override { return inner().IndexToMass(index); }
    double IndexWidthToMassWidth(double mass, double width) const override {
        return inner().IndexWidthToMassWidth(mass, width);
    }
    double MassWidthToIndexWidth(double mass, double width) const override {
        return inner().MassWidthToIndexWidth(mass, width);
    }
    Range monotonicMassRange(double mass) const override { return inner().monotonicMassRange(mass); }

    void Dump(std::ostream& sink) const override {
        sink << Derived::ClassName << "[ " << Derived::BoundsName << ": [" << m_lower << ", " << m_upper << "]\n";
        inner().Dump(sink);
        sink << "]\n";
    }

protected:
    BoundsChecker(const std::shared_ptr<ICalibrationTransformator>& inner, double lower, double upper)
        : ForwardingTransformator(inner), m_lower(lower), m_upper(upper) {}

    double lower() const { return m_lower; }
    double upper() const { return m_upper; }
    void setLower(double bound) { m_lower = bound; }
    void setUpper(double bound) { m_upper = bound; }

    /// The lower bound first.
    double clip(double value) const { return std::min(m_upper, std::max(m_lower, value)); }

private:
    const Derived& derived() const { return static_cast<const Derived&>(*this); }

    double m_lower;
    double m_upper;
};

}  // namespace kvan::calibration::Transformation
