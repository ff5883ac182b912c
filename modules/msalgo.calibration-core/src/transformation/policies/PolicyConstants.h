#pragma once

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::calibration::Transformation {

/// The view `View` of constants that are about to be cached by a policy. Throws `std::invalid_argument` when they do
/// not offer it: "kvan::calibration::Transformation::", `operation`, and "funConsts is not of type ", `viewName`, ".".
template <class View, class Constants>
const View& viewOf(const Constants& constants, const char* operation, const char* viewName) {
    const auto* view = dynamic_cast<const View*>(&constants);
    if (view == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument(std::string("kvan::calibration::Transformation::") + operation +
                                                    ":\n\t\t\t\t\t\t\t\t\t\t\t\t\tfunConsts is not of type " +
                                                    viewName + "."));
    return *view;
}

}  // namespace kvan::calibration::Transformation
