#pragma once

#include "families/CalibrationFamilies.h"

#include <memory>

namespace kvan::calibration::Transformation {

/// Whether constants offer the view `View`.
template <class View, class Constants>
bool offers(const Constants* constants) {
    return dynamic_cast<const View*>(constants) != nullptr;
}

/// A transformator of that class which takes the constants over; null physical ones are none.
template <class Class>
std::shared_ptr<ICalibrationTransformator> adopt(Factory::FunctionalPtr&& functional, Factory::PhysicalPtr&& physical) {
    auto transformator = std::make_shared<Class>();
    transformator->AdoptConstants(std::move(functional), std::move(physical));
    return transformator;
}

}  // namespace kvan::calibration::Transformation
