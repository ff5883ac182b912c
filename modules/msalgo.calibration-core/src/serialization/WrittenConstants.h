#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <boost/throw_exception.hpp>
#include <memory>
#include <stdexcept>

namespace kvan::calibration {

/// The constants of a transformator whose text is written, each in the view `View`. Throws `std::invalid_argument` when
/// they do not offer it.
class WrittenConstants {
public:
    explicit WrittenConstants(const ICalibrationTransformator& transformator)
        : m_functional(transformator.GetFunctionalConstants()), m_physical(transformator.GetPhysicalConstants()) {}

    template <class View>
    const View& law() const {
        return viewOf<View>(m_functional.get());
    }
    template <class View>
    const View& axis() const {
        return viewOf<View>(m_physical.get());
    }
    template <class View>
    const View* lawIf() const {
        return dynamic_cast<const View*>(m_functional.get());
    }
    int calibMode() const { return m_functional->GetCalibMode(); }

private:
    template <class View, class Held>
    static const View& viewOf(const Held* held) {
        const auto* const view = dynamic_cast<const View*>(held);
        if (view == nullptr)
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactorySerialization::SerializePraefixAndConstants: Constants do not offer "
                "serialization interface."));
        return *view;
    }

    std::shared_ptr<ICalibrationConstantsFunctional> m_functional;
    std::shared_ptr<ICalibrationConstantsPhysical> m_physical;
};

}  // namespace kvan::calibration
