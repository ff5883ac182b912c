#pragma once

#include <boost/throw_exception.hpp>
#include <memory>
#include <stdexcept>

namespace kvan::calibration {

/// What can be copied without knowing its class: constants, polynomials and transformators.
class ICloneable {
public:
    virtual ~ICloneable() = default;

    /// A new object of the same dynamic type that shares nothing with this one.
    virtual std::shared_ptr<ICloneable> Clone() const = 0;

protected:
    ICloneable() = default;
    ICloneable(const ICloneable&) = default;
    ICloneable& operator=(const ICloneable&) = default;
};

/// A deep copy as the interface `Interface`; null stays null. Throws `std::runtime_error` when the copy does not
/// offer that interface, which can only be a fault of an implementation of `Clone`.
template <class Interface>
std::shared_ptr<Interface> cloneObject(const std::shared_ptr<Interface>& object) {
    if (!object)
        return nullptr;
    auto copy = std::dynamic_pointer_cast<Interface>(object->Clone());
    if (!copy)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("Error while cloning an object. It is not of type ICloneable. This means there's an "
                               "error in an object's Clone() implementation."));
    return copy;
}

}  // namespace kvan::calibration
