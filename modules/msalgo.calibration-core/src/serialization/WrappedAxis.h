#pragma once

#include "transformation/ForwardingTransformator.h"

namespace kvan::calibration {

/// The time-of-flight transformator inside one of KITE or PSD.
inline const ICalibrationTransformator& axisInside(const ICalibrationTransformator& transformator) {
    return dynamic_cast<const Transformation::ForwardingTransformator&>(transformator).inner();
}

/// The polynomial of a transformator around an axis, by the facet that gives it; null if it has none.
template <class Polynomial, class Facet>
std::shared_ptr<Polynomial> polynomialOf(const ICalibrationTransformator& transformator) {
    return std::dynamic_pointer_cast<Polynomial>(dynamic_cast<const Facet&>(transformator).GetPolynomial());
}

}  // namespace kvan::calibration
