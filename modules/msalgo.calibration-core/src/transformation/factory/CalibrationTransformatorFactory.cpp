#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"

#include "transformation/NewTransformator.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::calibration::Transformation {

namespace {

using Factory = ICalibrationTransformatorFactory;

template <class Class>
Factory::TransformatorPtr make(const Factory::FunctionalPtr& functional, const Factory::PhysicalPtr& physical) {
    auto transformator = newTransformator<Class>();
    transformator->SetFunctionalConstants(functional);
    transformator->SetPhysicalConstants(physical);
    return transformator;
}

/// The family's view of the functional constants, for the operation `name`.
template <class View>
const View& familyView(const Factory::FunctionalPtr& functional, const char* name, const char* viewName) {
    const auto* const view = dynamic_cast<const View*>(functional.get());
    if (view == nullptr)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument(std::string("kvan::calibration::Transformation::CalibrationTransformatorFactory::") +
                                  name + ": funcConsts is not of type " + viewName));
    return *view;
}

/// Whether the functional constants are of the family; then the physical ones must be too.
template <class FunctionalView, class PhysicalView>
bool isFamily(const Factory::FunctionalPtr& functional, const Factory::PhysicalPtr& physical) {
    if (dynamic_cast<const FunctionalView*>(functional.get()) == nullptr)
        return false;
    if (dynamic_cast<const PhysicalView*>(physical.get()) == nullptr)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("CalibrationTransformatorFactory::createTransformator: invalid calibration "
                                  "constants: types differ"));
    return true;
}

}  // namespace

const std::shared_ptr<const ICalibrationTransformatorFactory>& CalibrationTransformatorFactory::instance() {
    static const std::shared_ptr<const ICalibrationTransformatorFactory> shared =
        std::make_shared<CalibrationTransformatorFactory>();
    return shared;
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformator(const FunctionalPtr& functional,
                                                                               const PhysicalPtr& physical) const {
    if (isFamily<ICalibrationConstantsFunctionalTOF1, ICalibrationConstantsPhysicalTOF>(functional, physical))
        return createTransformatorTof(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalPaladin, ICalibrationConstantsPhysicalPaladin>(functional, physical))
        return createTransformatorTrap(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalLinear, ICalibrationConstantsPhysicalLinear>(functional, physical))
        return createTransformatorLinear(functional, physical);
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "CalibrationTransformatorFactory::createTransformator: invalid transformator: type unknown"));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTrap(const FunctionalPtr& functional,
                                                                                   const PhysicalPtr& physical) const {
    const auto& law = familyView<ICalibrationConstantsFunctionalPaladin>(functional, "createTransformatorTrap",
                                                                         "ICalibrationConstantsFunctionalPaladin");
    return law.GetStoredC2() == 0.0 ? make<CalibrationTransformatorPaladinLinear>(functional, physical)
                                    : make<CalibrationTransformatorPaladinQuadratic>(functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorLinear(
    const FunctionalPtr& functional, const PhysicalPtr& physical) const {
    familyView<ICalibrationConstantsFunctionalLinear>(functional, "createTransformatorLinear",
                                                      "ICalibrationConstantsFunctionalLinear");
    return make<CalibrationTransformatorLinear>(functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTof(const FunctionalPtr& functional,
                                                                                  const PhysicalPtr& physical) const {
    const auto& law = familyView<ICalibrationConstantsFunctionalTOF1>(functional, "createTransformatorTof",
                                                                      "ICalibrationConstantsFunctionalTOF1");
    return law.GetStoredC2() == 0.0 ? make<CalibrationTransformatorTOFLinear>(functional, physical)
                                    : make<CalibrationTransformatorTOFQuadratic>(functional, physical);
}

}  // namespace kvan::calibration::Transformation
