#pragma once

#include "families/CalibrationFamilies.h"

#include <memory>
#include <typeinfo>
#include <utility>

namespace kvan::calibration::Transformation {

/// Whether constants offer the view `View`.
template <class View, class Constants>
bool offers(const Constants* constants) {
    return dynamic_cast<const View*>(constants) != nullptr;
}

/// The object as one of the class `Exact`; null for any other, derived ones included. One comparison, where the cast to
/// an interface is a search.
template <class Exact, class Base>
Exact* exactly(Base* object) {
    return object != nullptr && typeid(*object) == typeid(Exact) ? static_cast<Exact*>(object) : nullptr;
}

/// The view of constants that offer it; those of the classes `Laws`, which blobs are read into, at once.
template <class View, class... Laws>
const View& knownView(const ICalibrationConstantsFunctional& constants) {
    const View* view = nullptr;
    ((view = view != nullptr ? view : exactly<const Laws>(&constants)), ...);
    return view != nullptr ? *view : dynamic_cast<const View&>(constants);
}

/// A transformator of that class which takes the constants over; null physical ones are none. Constants of the classes
/// `Laws` and `Axis`, which blobs are read into, are looked at as such.
template <class Class, class Axis, class... Laws>
TransformatorPtr adopt(Factory::FunctionalPtr&& functional, Factory::PhysicalPtr&& physical) {
    auto transformator = std::make_shared<Class>();
    Axis* const axis = exactly<Axis>(physical.get());
    const auto adoptAs = [&](const auto* law) {
        if (law != nullptr)
            transformator->AdoptConstants(std::move(functional), std::move(physical), *law, *axis);
        return law != nullptr;
    };
    const bool isKnown = axis != nullptr && (adoptAs(exactly<const Laws>(functional.get())) || ...);
    if (!isKnown)
        transformator->AdoptConstants(std::move(functional), std::move(physical));
    return transformator;
}

}  // namespace kvan::calibration::Transformation
