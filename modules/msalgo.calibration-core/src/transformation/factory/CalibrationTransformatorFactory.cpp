#include "transformation/NewTransformator.h"
#include "transformation/decorators/CalibrationTransformatorIndexBoundsChecker.h"
#include "transformation/decorators/CalibrationTransformatorRawBoundsChecker.h"
#include "transformation/gpx/CalibrationTransformatorGPX.h"
#include "transformation/kite/KiteTransformators.h"
#include "transformation/psd/CalibrationTransformatorPSD.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>

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

Factory::TransformatorPtr makeTof(const Factory& factory, double timeDelay, double timeBase, double c0, double c1,
                                  double c2) {
    return factory.createTransformatorTof(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(c0, c1, c2),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

void requireInner(const Factory::TransformatorPtr& inner, const char* failure) {
    if (!inner)
        BOOST_THROW_EXCEPTION(std::invalid_argument(std::string("CalibrationTransformatorFactory::") + failure));
}

}  // namespace

const std::shared_ptr<const ICalibrationTransformatorFactory>& CalibrationTransformatorFactory::instance() {
    static const std::shared_ptr<const ICalibrationTransformatorFactory> shared =
        std::make_shared<CalibrationTransformatorFactory>();
    return shared;
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformator(const FunctionalPtr& functional,
                                                                               const PhysicalPtr& physical) const {
    if (isFamily<ICalibrationConstantsFunctionalTOF2, ICalibrationConstantsPhysicalTOF>(functional, physical))
        return createTransformatorTof2(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalTOF1, ICalibrationConstantsPhysicalTOF>(functional, physical))
        return createTransformatorTof(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalFTMS, ICalibrationConstantsPhysicalFTMS>(functional, physical))
        return createTransformatorIcr(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalPaladin, ICalibrationConstantsPhysicalPaladin>(functional, physical))
        return createTransformatorTrap(functional, physical);
    if (isFamily<ICalibrationConstantsFunctionalLinear, ICalibrationConstantsPhysicalLinear>(functional, physical))
        return createTransformatorLinear(functional, physical);
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "CalibrationTransformatorFactory::createTransformator: invalid transformator: type unknown"));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createDecoratedTransformator(Decorator kind,
                                                                                        const TransformatorPtr& inner,
                                                                                        double lower,
                                                                                        double upper) const {
    requireInner(inner, "createDecoratedTransformator: no transformator to be decorated");
    switch (kind) {
        case Decorator::RawBounds:
            return std::make_shared<CalibrationTransformatorRawBoundsChecker>(inner, lower, upper);
        case Decorator::IndexBounds:
            return std::make_shared<CalibrationTransformatorIndexBoundsChecker>(inner, lower, upper);
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "CalibrationTransformatorFactory::createDecoratedTransformator: invalid transformator: type unknown"));
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

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorTof2(const FunctionalPtr& functional,
                                                                                   const PhysicalPtr& physical) const {
    const auto& law = familyView<ICalibrationConstantsFunctionalTOF2>(functional, "createTransformatorTof2",
                                                                      "ICalibrationConstantsFunctionalTOF2");
    if (law.GetStoredC3() != 0.0)
        return make<CalibrationTransformatorTOF2Cubic>(functional, physical);
    return law.GetStoredC2() != 0.0 ? make<CalibrationTransformatorTOF2Quadratic>(functional, physical)
                                    : make<CalibrationTransformatorTOF2Linear>(functional, physical);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorIcr(const FunctionalPtr& functional,
                                                                                  const PhysicalPtr& physical) const {
    if (dynamic_cast<const ICalibrationConstantsFunctionalFTMS*>(functional.get()) == nullptr)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("kvan::calibration::Transformation::CalibrationTransformatorFactory::"
                                  "createTransformatorIcr: expected ICalibrationConstantsFunctionalFTMS"));
    switch (const int mode = functional->GetCalibMode()) {
        case 0:
        case 4:
            return make<CalibrationTransformatorFTMS04>(functional, physical);
        case 1:
        case 5:
            return make<CalibrationTransformatorFTMS15>(functional, physical);
        case 2:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: mode 2 not supported [QX]"));
        case 3:
        case 6:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: mode 3 and 6 not supported [QX]"));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: unknown ftms mode. Expected 0..6, but "
                "CalibMode = " +
                std::to_string(mode)));
    }
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorGPX(
    const TransformatorPtr& inner, const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) const {
    requireInner(inner, "createTransformatorGPX: no transformator to be corrected");
    return std::make_shared<CalibrationTransformatorGPX>(inner, polynomial);
}

Factory::FunctionalPtr CalibrationTransformatorFactory::createConstantsFunctionalIcr(int calibMode, int ftmsRawMode,
                                                                                     int, bool quadraticFlag,
                                                                                     double alpha, double beta,
                                                                                     double freqHigh) const {
    switch (calibMode) {
        case 0:
        case 4:
            return std::make_shared<Constants::CalibrationConstantsFunctionalFTMS04>(beta, freqHigh, calibMode,
                                                                                     ftmsRawMode);
        case 1:
        case 3:
        case 5:
        case 6:
            return std::make_shared<Constants::CalibrationConstantsFunctionalFTMS1356>(
                alpha, beta, freqHigh, quadraticFlag, calibMode, ftmsRawMode);
        case 2:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createConstantsFunctionalIcr: mode 2 not supported [QX]"));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument("unknown icr mode in serialization"));
    }
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorPsd(
    const TransformatorPtr& tof,
    const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial) const {
    if (!tof)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorPsd: invalid transformator: type unknown"));
    return newPsd(tof, polynomial);
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite2(const TransformatorPtr& tof,
                                                                                    const Kite2Numbers& numbers) const {
    if (!tof || numbers.parents.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial"));
    return newKite2(tof, Constants::CalibrationPolynomialKITE2(numbers));
}

/// The bounds of indices are kept, but nothing uses them: they count as ignored.
Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite2(
    double timeDelay, double timeBase, double c0, double c1, double c2, const std::vector<CCalibPolynomial>& parents,
    const CCalibPolynomial& global, const std::vector<double>& vc0, int interpolationMode, double parentMass,
    double referenceTime, int firstIndex, int lastIndex) const {
    return createTransformatorKite2(makeTof(*this, timeDelay, timeBase, c0, c1, c2),
                                    {.parentMass = parentMass,
                                     .referenceTime = referenceTime,
                                     .measuredParentMass = parentMass,
                                     .measuredReferenceTime = referenceTime,
                                     .indexRange = {firstIndex, lastIndex},
                                     .ignoreIndexBounds = true,
                                     .interpolationMode = interpolationMode,
                                     .parents = parents,
                                     .global = global,
                                     .vc0 = vc0});
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite(const TransformatorPtr& tof,
                                                                                   const Kite1Numbers& numbers) const {
    if (!tof)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactory::createTransformatorKite: can't create kitePolynomial"));
    return newKite1(tof, Constants::CalibrationPolynomialKITE1(numbers));
}

Factory::TransformatorPtr CalibrationTransformatorFactory::createTransformatorKite(
    double timeDelay, double timeBase, double c0, double c1, double c2, double parentMass, double correctionTime,
    const std::vector<double>& coefficients, double calibrationParentMass, double calibTimeLow, double calibTimeHigh,
    int firstIndex, int lastIndex) const {
    return createTransformatorKite(makeTof(*this, timeDelay, timeBase, c0, c1, c2),
                                   {.parentMass = parentMass,
                                    .correctionTime = correctionTime,
                                    .calibrationParentMass = calibrationParentMass,
                                    .calibTimeRange = {calibTimeLow, calibTimeHigh},
                                    .indexRange = {firstIndex, lastIndex},
                                    .coefficients = coefficients});
}

}  // namespace kvan::calibration::Transformation
