#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::Transformation {

/// Base of transformators around another one: constants, measurement mode, index offset and every conversion between
/// index and raw value are those of the transformator inside.
class ForwardingTransformator : public ICalibrationTransformator {
public:
    int GetFunctionalTypeCode() const override { return m_inner->GetFunctionalTypeCode(); }
    double GetIndexOffset() const override { return m_inner->GetIndexOffset(); }
    std::shared_ptr<ICalibrationConstantsFunctional> GetFunctionalConstants() const override {
        return m_inner->GetFunctionalConstants();
    }
    void SetFunctionalConstants(const std::shared_ptr<ICalibrationConstantsFunctional>& constants) override {
        m_inner->SetFunctionalConstants(constants);
    }
    std::shared_ptr<ICalibrationConstantsPhysical> GetPhysicalConstants() const override {
        return m_inner->GetPhysicalConstants();
    }
    void SetPhysicalConstants(const std::shared_ptr<ICalibrationConstantsPhysical>& constants) override {
        m_inner->SetPhysicalConstants(constants);
    }
    std::shared_ptr<IMeasurementModeInfo> GetMeasurementModeInfo() const override {
        return m_inner->GetMeasurementModeInfo();
    }
    void SetMeasurementModeInfo(const std::shared_ptr<IMeasurementModeInfo>& mode) override {
        m_inner->SetMeasurementModeInfo(mode);
    }
    int GetCalibMode() const override { return m_inner->GetCalibMode(); }
    void SetCalibMode(int mode) override { m_inner->SetCalibMode(mode); }
    void SetIndexOffset(double offset) override { m_inner->SetIndexOffset(offset); }
    void AssimilateIndexOffset() override { m_inner->AssimilateIndexOffset(); }
    void AdaptRawStart(double rawStart) override { m_inner->AdaptRawStart(rawStart); }

    void IndicesToRaws(const Indices& indices, Doubles& raws) const override { m_inner->IndicesToRaws(indices, raws); }
    double IndexToRaw(std::int32_t index) const override { return m_inner->IndexToRaw(index); }
    void DIndicesToRaws(Doubles& values) const override { m_inner->DIndicesToRaws(values); }
    void DIndicesToRaws(const Doubles& indices, Doubles& raws) const override {
        m_inner->DIndicesToRaws(indices, raws);
    }
    double DIndexToRaw(double index) const override { return m_inner->DIndexToRaw(index); }
    void RawsToIndices(const Doubles& raws, Indices& indices) const override { m_inner->RawsToIndices(raws, indices); }
    std::int32_t RawToIndex(double raw) const override { return m_inner->RawToIndex(raw); }
    void RawsToDIndices(Doubles& values) const override { m_inner->RawsToDIndices(values); }
    void RawsToDIndices(const Doubles& raws, Doubles& indices) const override {
        m_inner->RawsToDIndices(raws, indices);
    }
    double RawToDIndex(double raw) const override { return m_inner->RawToDIndex(raw); }

    const ICalibrationTransformator& inner() const { return *m_inner; }

protected:
    /// Takes a deep copy of `inner`, which must not be null.
    explicit ForwardingTransformator(const std::shared_ptr<ICalibrationTransformator>& inner)
        : m_inner(cloneObject(inner)) {}
    ForwardingTransformator(const ForwardingTransformator& other) : m_inner(cloneObject(other.m_inner)) {}
    ForwardingTransformator& operator=(const ForwardingTransformator&) = delete;

    ICalibrationTransformator& inner() { return *m_inner; }
    /// Takes a deep copy; must not be null.
    void setInner(const std::shared_ptr<ICalibrationTransformator>& inner) { m_inner = cloneObject(inner); }

private:
    std::shared_ptr<ICalibrationTransformator> m_inner;
};

}  // namespace kvan::calibration::Transformation
