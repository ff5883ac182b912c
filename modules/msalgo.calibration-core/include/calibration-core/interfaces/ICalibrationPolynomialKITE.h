#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomial.h>

#include <cstdint>

namespace kvan::calibration {

/// What both generations of KITE calibrations hold. The range of indices is kept and written; no conversion uses it.
class ICalibrationPolynomialKITE : public ICalibrationPolynomial {
public:
    using IndexRange = std::pair<std::int32_t, std::int32_t>;

    /// Parent mass at which the calibration was measured.
    virtual double GetCalibrationParentMass() const = 0;
    virtual IndexRange GetIndexRange() const = 0;
    virtual bool GetIgnoreIndexBounds() const = 0;
};

/// First generation: mass is a polynomial in raw value - correction time.
class ICalibrationPolynomialKITE1 : public ICalibrationPolynomialKITE {
public:
    /// At the calibration parent mass.
    virtual const std::vector<double>& GetCalibrationCoefficients() const = 0;
    virtual double GetCorrectionTime() const = 0;
    /// Kept and written; no conversion uses it.
    virtual double GetKiteTime() const = 0;
    /// Times that the calibration was measured over, at the calibration parent mass and less the correction time.
    virtual Range GetCalibTimeRange() const = 0;
};

}  // namespace kvan::calibration
