#include "transformation/policies/QuadraticRoot.h"
#include "transformation/policies/RMQuadraticTilt.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>

// Failures of laws, out of line: their loops hold a compare and a call at most. The first one carries no file and line:
// a batch gives a failure of its own in its place.
namespace kvan::calibration::Transformation {

void throwComplexSolution() {
    throw std::logic_error("complex valued solution in computation due to invalid calibration constants/value range");
}

void throwNegativeSlope() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Case b*x + c with negative slope."));
}

void throwConstantPolynomial() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Polynomial is constant."));
}

}  // namespace kvan::calibration::Transformation
