#pragma once

#include <calibration-core/constants/FunctionalConstants.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Constants {

/// Law of an FTMS instrument in calibration modes 0 and 4: raw = freqHigh / mass - beta, raw being a frequency.
class CalibrationConstantsFunctionalFTMS04 final : public ICalibrationConstantsFunctional,
                                                   public ICalibrationConstantsFunctionalFTMS,
                                                   public ICalibrationConstantsFunctionalFTMS04,
                                                   public ICalibrationConstantsFunctionalComputationLinear {
public:
    CalibrationConstantsFunctionalFTMS04() = default;
    /// Throws as `SetCalibMode`.
    CalibrationConstantsFunctionalFTMS04(double beta, double freqHigh, int calibMode, int ftmsRawMode = 0);

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    /// Throws `std::invalid_argument` for anything but 0 and 4, and keeps the mode it had.
    void SetCalibMode(int mode) override;
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Ftms); }
    void ResetRawMode() override { m_ftmsRawMode = 0; }
    void Dump(std::ostream& sink) const override;

    int GetFTMSRawMode() const override { return m_ftmsRawMode; }
    void SetFTMSRawMode(int mode) override { m_ftmsRawMode = mode; }
    bool GetQuadraticFlag() const override { return false; }

    double GetBeta() const override { return m_beta; }
    void SetBeta(double value) override { m_beta = value; }
    double GetFreqHigh() const override { return m_freqHigh; }
    void SetFreqHigh(double value) override { m_freqHigh = value; }

    double GetC0() const override { return m_beta * -1.0; }
    void SetC0(double value) override { m_beta = value * -1.0; }
    double GetC1() const override { return m_freqHigh; }
    void SetC1(double value) override { m_freqHigh = value; }

private:
    double m_beta = 0.0;
    double m_freqHigh = 1.0;
    int m_calibMode = 0;
    int m_ftmsRawMode = 0;
};

/// Law of an FTMS instrument in calibration modes 1, 3, 5 and 6: raw = alpha / mass^2 + freqHigh / mass + beta. No
/// transformator is made for modes 3 and 6.
class CalibrationConstantsFunctionalFTMS1356 final : public ICalibrationConstantsFunctional,
                                                     public ICalibrationConstantsFunctionalFTMS,
                                                     public ICalibrationConstantsFunctionalFTMS1356,
                                                     public ICalibrationConstantsFunctionalComputationQuadratic {
public:
    CalibrationConstantsFunctionalFTMS1356() = default;
    /// Throws `std::invalid_argument` for another mode.
    CalibrationConstantsFunctionalFTMS1356(double alpha, double beta, double freqHigh, bool quadraticFlag,
                                           int calibMode, int ftmsRawMode = 0);

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    /// Throws `std::invalid_argument` for another mode, and keeps the mode it had.
    void SetCalibMode(int mode) override;
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Ftms); }
    void ResetRawMode() override { m_ftmsRawMode = 0; }
    void Dump(std::ostream& sink) const override;

    int GetFTMSRawMode() const override { return m_ftmsRawMode; }
    void SetFTMSRawMode(int mode) override { m_ftmsRawMode = mode; }

    double GetAlpha() const override { return m_alpha; }
    void SetAlpha(double value) override { m_alpha = value; }
    double GetBeta() const override { return m_beta; }
    void SetBeta(double value) override { m_beta = value; }
    double GetFreqHigh() const override { return m_freqHigh; }
    void SetFreqHigh(double value) override { m_freqHigh = value; }
    bool GetQuadraticFlag() const override { return m_quadraticFlag; }
    void SetQuadraticFlag(bool flag) override { m_quadraticFlag = flag; }

    double GetC0() const override { return m_beta; }
    void SetC0(double value) override { m_beta = value; }
    double GetC1() const override { return m_freqHigh; }
    void SetC1(double value) override { m_freqHigh = value; }
    double GetC2() const override { return m_alpha; }
    void SetC2(double value) override { m_alpha = value; }
    double GetD() const override { return m_freqHigh * m_freqHigh; }

private:
    double m_alpha = 0.0;
    double m_beta = 0.0;
    double m_freqHigh = 1.0;
    bool m_quadraticFlag = false;
    int m_calibMode = 1;
    int m_ftmsRawMode = 0;
};

/// Frequency axis: index 0 holds the highest frequency. The line between index and raw value, and the change by an
/// index offset, depend on the calibration mode; any mode but 0 to 6 makes them throw `std::invalid_argument`.
class CalibrationConstantsPhysicalFTMS final : public ICalibrationConstantsPhysical,
                                               public ICalibrationConstantsPhysicalLinear,
                                               public ICalibrationConstantsPhysicalFTMS {
public:
    CalibrationConstantsPhysicalFTMS() = default;
    CalibrationConstantsPhysicalFTMS(double freqLow, double freqWidth, int size, int calibMode = 0, int ftmsRawMode = 0)
        : m_calibMode(calibMode),
          m_ftmsRawMode(ftmsRawMode),
          m_freqLow(freqLow),
          m_freqWidth(freqWidth),
          m_size(size) {}

    std::shared_ptr<ICloneable> Clone() const override;
    bool IsEqual(const ICalibrationConstantsPhysical& other) const override;
    void AdaptRawStart(double rawStart) override { m_freqLow = rawStart > 0.0 ? 0.0 : rawStart; }
    void AssimilateIndexOffset(double indexOffset) override;
    void Dump(std::ostream& sink) const override;

    double GetA0() const override;
    double GetA1() const override;

    int GetCalibMode() const override { return m_calibMode; }
    void SetCalibMode(int mode) override { m_calibMode = mode; }
    int GetFTMSRawMode() const override { return m_ftmsRawMode; }
    void SetFTMSRawMode(int mode) override { m_ftmsRawMode = mode; }
    double GetFreqLow() const override { return m_freqLow; }
    void SetFreqLow(double frequency) override { m_freqLow = frequency; }
    double GetFreqWidth() const override { return m_freqWidth; }
    void SetFreqWidth(double width) override { m_freqWidth = width; }
    int GetSize() const override { return m_size; }
    void SetSize(int size) override { m_size = size; }

private:
    double base() const { return m_ftmsRawMode == 1 ? 0.0 : m_freqLow; }

    int m_calibMode = 0;
    int m_ftmsRawMode = 0;
    double m_freqLow = 0.0;
    double m_freqWidth = 0.0;
    int m_size = 1;
};

}  // namespace kvan::calibration::Constants
