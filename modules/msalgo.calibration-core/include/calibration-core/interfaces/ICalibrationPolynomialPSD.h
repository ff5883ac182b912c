#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomial.h>

namespace kvan::calibration {

/// Ties the true mass of a fragment to the apparent one.
class ICalibrationPolynomialPSD : public ICalibrationPolynomial {
public:
    virtual double GetCalibrationMass() const = 0;
    /// Voltage of the segment of the reflector in which the spectrum was recorded, in kilovolts.
    virtual double GetUSegment() const = 0;
    /// Voltage of the full reflector. Kept and written; no conversion uses it.
    virtual double GetURefFull() const = 0;
};

/// The fast form: a polynomial in the root of the apparent mass, derived from two sets of coefficients of one length.
class ICalibrationPolynomialPSDFAST : public ICalibrationPolynomialPSD {
public:
    virtual const std::vector<double>& GetSPCCoefficients() const = 0;
    virtual const std::vector<double>& GetOCPCoefficients() const = 0;
    /// Derives the coefficients anew. Throws `std::invalid_argument` "CalibrationPolynomialPSDFAST::
    /// ComputePolynomialCoefficients: Number of SPC and OCP coefficients differ".
    virtual void ComputePolynomialCoefficients() = 0;
};

}  // namespace kvan::calibration
