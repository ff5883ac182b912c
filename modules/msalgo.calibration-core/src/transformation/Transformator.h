#pragma once

#include "families/ICalibSerialization.h"
#include "transformation/BatchTransformation.h"
#include "transformation/IHeldConstants.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <boost/throw_exception.hpp>
#include <ostream>
#include <stdexcept>

namespace kvan::calibration::Transformation {

/// A transformator out of policies. `Derived` is the class of the object; it is final, gives `ClassName`, its name in
/// dumps, and `StoredFamily`, whose blobs hold it, and stands in the source file of its law.
template <class Derived, class RawMassPolicy, class RawIndexPolicy, class ConstantsSettingPolicy>
class Transformator : public ICalibrationTransformator, public ICalibSerialization, public IHeldConstants {
public:
    std::shared_ptr<ICloneable> Clone() const override {
        return std::make_shared<Derived>(static_cast<const Derived&>(*this));
    }

    int GetFunctionalTypeCode() const override { return functional().GetFunctionalTypeCode(); }
    double GetIndexOffset() const override { return m_law.indexOffset; }

    std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const override {
        return cloneObject(m_functional);
    }

    void SetFunctionalConstants(const std::shared_ptr<ICalibrationConstantsFunctional>& constants) override {
        if (!constants)
            return;
        AdoptFunctionalConstants(cloneObject(constants));
    }

    std::shared_ptr<ICalibrationConstantsPhysical> GetPhysicalConstants() const override {
        return cloneObject(m_physical);
    }

    void SetPhysicalConstants(const std::shared_ptr<ICalibrationConstantsPhysical>& constants) override {
        if (!constants)
            return;
        m_physical = cloneObject(constants);
        ConstantsSettingPolicy::ConstantsSet(m_functional.get(), m_physical.get());
        refreshRawIndex();
    }

    std::shared_ptr<IMeasurementModeInfo> GetMeasurementModeInfo() const override { return cloneObject(m_mode); }
    void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>& mode) override {
        m_mode = cloneObject(mode);
    }

    /// As both setters, but takes the objects over, which nobody else may hold; null physical ones are none.
    void AdoptConstants(std::shared_ptr<ICalibrationConstantsFunctional>&& functional,
                        std::shared_ptr<ICalibrationConstantsPhysical>&& physical) {
        m_functional = std::move(functional);
        m_physical = std::move(physical);
        ConstantsSettingPolicy::ConstantsSet(m_functional.get(), m_physical.get());
        m_law.rawMass.UpdateFunctionalConstants(*m_functional);
        refreshRawIndex();
    }

    /// The same of constants whose classes are known: `law` and `axis` are the objects.
    template <class Functional, class Physical>
    void AdoptConstants(std::shared_ptr<ICalibrationConstantsFunctional>&& functional,
                        std::shared_ptr<ICalibrationConstantsPhysical>&& physical, const Functional& law,
                        Physical& axis) {
        m_functional = std::move(functional);
        m_physical = std::move(physical);
        ConstantsSettingPolicy::ConstantsSet(&law, &axis);
        m_law.rawMass.UpdateFunctionalConstants(law);
        m_law.rawIndex.UpdatePhysicalConstants(axis);
    }

    const ICalibrationConstantsFunctional* HeldFunctionalConstants() const override { return m_functional.get(); }
    void AdoptFunctionalConstants(std::shared_ptr<ICalibrationConstantsFunctional>&& constants) override {
        m_functional = std::move(constants);
        ConstantsSettingPolicy::ConstantsSet(m_functional.get(), m_physical.get());
        m_law.rawMass.UpdateFunctionalConstants(*m_functional);
        if constexpr (ConstantsSettingPolicy::ChangesPhysical)
            refreshRawIndex();
    }

    int GetCalibMode() const override { return functional().GetCalibMode(); }
    void SetCalibMode(int mode) override { functional().SetCalibMode(mode); }

    bool IsEqual(const ICalibrationTransformator& other) const override {
        const auto* const same = dynamic_cast<const Derived*>(&other);
        if (same == nullptr)
            return false;
        const Transformator& base = *same;
        return functional().IsEqual(base.functional()) && physical().IsEqual(base.physical());
    }

    void SetIndexOffset(double offset) override { m_law.indexOffset = offset; }

    void AssimilateIndexOffset() override {
        if (m_physical)
            m_physical->AssimilateIndexOffset(m_law.indexOffset);
        if (m_functional)
            m_functional->ResetRawMode();
        m_law.indexOffset = 0.0;
        refreshRawIndex();
    }

    void AdaptRawStart(double rawStart) override {
        physical().AdaptRawStart(rawStart);
        refreshRawIndex();
    }

    void MassesToRaws(Doubles& values) const override { batch<MassRawTransformFunctor>(values, values); }
    void MassesToRaws(const Doubles& masses, Doubles& raws) const override {
        batch<MassRawTransformFunctor>(masses, raws);
    }
    double MassToRaw(double mass) const override { return single<MassRawTransformFunctor>(mass); }

    void RawsToMasses(Doubles& values) const override { batch<RawMassTransformFunctor>(values, values); }
    void RawsToMasses(const Doubles& raws, Doubles& masses) const override {
        batch<RawMassTransformFunctor>(raws, masses);
    }
    double RawToMass(double raw) const override { return single<RawMassTransformFunctor>(raw); }

    void MassesToIndices(const Doubles& masses, Indices& indices) const override {
        batch<MassIndexTransformFunctor>(masses, indices);
    }
    std::int32_t MassToIndex(double mass) const override { return single<MassIndexTransformFunctor>(mass); }
    void MassesToDIndices(Doubles& values) const override { batch<MassDIndexTransformFunctor>(values, values); }
    void MassesToDIndices(const Doubles& masses, Doubles& indices) const override {
        batch<MassDIndexTransformFunctor>(masses, indices);
    }
    double MassToDIndex(double mass) const override { return single<MassDIndexTransformFunctor>(mass); }

    void DIndicesToMasses(Doubles& values) const override { batch<DIndexMassTransformFunctor>(values, values); }
    void DIndicesToMasses(const Doubles& indices, Doubles& masses) const override {
        batch<DIndexMassTransformFunctor>(indices, masses);
    }
    double DIndexToMass(double index) const override { return single<DIndexMassTransformFunctor>(index); }
    void IndexRangeToMasses(std::int32_t first, std::int32_t last, Doubles& masses) const override {
        RangeTransformation<IndexMassTransformFunctor>(m_law, first, last, masses);
    }
    void IndicesToMasses(const Indices& indices, Doubles& masses) const override {
        batch<IndexMassTransformFunctor>(indices, masses);
    }
    double IndexToMass(std::int32_t index) const override { return single<IndexMassTransformFunctor>(index); }

    void IndicesToRaws(const Indices& indices, Doubles& raws) const override {
        batch<IndexRawTransformFunctor>(indices, raws);
    }
    double IndexToRaw(std::int32_t index) const override { return single<IndexRawTransformFunctor>(index); }
    void DIndicesToRaws(Doubles& values) const override { batch<DIndexRawTransformFunctor>(values, values); }
    void DIndicesToRaws(const Doubles& indices, Doubles& raws) const override {
        batch<DIndexRawTransformFunctor>(indices, raws);
    }
    double DIndexToRaw(double index) const override { return single<DIndexRawTransformFunctor>(index); }

    void RawsToIndices(const Doubles& raws, Indices& indices) const override {
        batch<RawIndexTransformFunctor>(raws, indices);
    }
    std::int32_t RawToIndex(double raw) const override { return single<RawIndexTransformFunctor>(raw); }
    void RawsToDIndices(Doubles& values) const override { batch<RawDIndexTransformFunctor>(values, values); }
    void RawsToDIndices(const Doubles& raws, Doubles& indices) const override {
        batch<RawDIndexTransformFunctor>(raws, indices);
    }
    double RawToDIndex(double raw) const override { return single<RawDIndexTransformFunctor>(raw); }

    CalibrationFamily GetStoredFamily() const override { return Derived::StoredFamily; }

    void Dump(std::ostream& sink) const override {
        sink << Derived::ClassName << "[ ";
        if (m_functional)
            m_functional->Dump(sink);
        if (m_physical)
            m_physical->Dump(sink);
        if (m_mode)
            m_mode->Dump(sink);
        sink << "\tIndex offset[" << m_law.indexOffset << "]\n]\n";
    }

protected:
    Transformator() = default;
    Transformator(const Transformator& other)
        : m_functional(cloneObject(other.m_functional)),
          m_physical(cloneObject(other.m_physical)),
          m_mode(cloneObject(other.m_mode)),
          m_law(other.m_law) {}
    Transformator& operator=(const Transformator&) = delete;

    ICalibrationConstantsFunctional& functional() const {
        if (!m_functional)
            BOOST_THROW_EXCEPTION(std::runtime_error("no functional constants"));
        return *m_functional;
    }

    ICalibrationConstantsPhysical& physical() const {
        if (!m_physical)
            BOOST_THROW_EXCEPTION(std::runtime_error("no physical constants"));
        return *m_physical;
    }

private:
    void refreshRawIndex() {
        if (m_physical)
            m_law.rawIndex.UpdatePhysicalConstants(*m_physical);
    }

    template <class Functor>
    typename Functor::Destination single(typename Functor::Source value) const {
        ThrowAtOnce failure;
        return Functor::convert(m_law, value, failure);
    }

    template <class Functor>
    void batch(const std::vector<typename Functor::Source>& source,
               std::vector<typename Functor::Destination>& destination) const {
        BatchTransformation<Functor>(m_law, source, destination);
    }

    std::shared_ptr<ICalibrationConstantsFunctional> m_functional;
    std::shared_ptr<ICalibrationConstantsPhysical> m_physical;
    std::shared_ptr<IMeasurementModeInfo> m_mode;
    Law<RawMassPolicy, RawIndexPolicy> m_law;
};

}  // namespace kvan::calibration::Transformation
