#include "transformation/policies/RMQuadratic.h"

namespace kvan::calibration::Transformation {

void throwComplexSolution() {
    throw std::logic_error("complex valued solution in computation due to invalid calibration constants/value range");
}

}  // namespace kvan::calibration::Transformation
