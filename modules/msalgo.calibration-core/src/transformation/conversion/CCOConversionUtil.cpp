#include "transformation/conversion/CCOConversionUtil.h"

#include "calibration-core/constants/CalibrationConstantsLinear.h"
#include "calibration-core/constants/CalibrationConstantsPaladin.h"
#include "calibration-core/constants/CalibrationConstantsTOF.h"
#include "calibration-core/interfaces/MeasurementModeInfo.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

/// The view `View` of constants that `getter` gave for a block of that name.
template <class View, class Constants>
const View& viewFor(const std::shared_ptr<Constants>& constants, const char* block, const char* getter,
                    const char* viewName) {
    const auto* const view = dynamic_cast<const View*>(constants.get());
    if (view == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument(std::string("CCOConversionUtil::MapCCO2QSF(") + block +
                                                    "): constants of " + getter + " are not of type " + viewName +
                                                    "."));
    return *view;
}

}  // namespace

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOFCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.createTransformatorTof(
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(double{block.c0}, double{block.c1},
                                                                        double{block.c2}),
        std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(double{block.timeDelay}, double{block.timeBase}));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOFCalibrationRefBlock& block,
                                                                  const Factory& factory) {
    auto transformator = MapQSF2CCO(block.block, factory);
    transformator->SetMeasurementModeInfo(std::make_shared<Transformation::MeasurementModeInfo>(
        block.key.polarity, block.key.acquisitionMode, block.key.scanMode, block.key.msLevel));
    return transformator;
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const IonTrapCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.createTransformatorTrap(std::make_shared<Constants::CalibrationConstantsFunctionalPaladin>(
                                               double{block.c0}, double{block.c1}, double{block.c2}),
                                           std::make_shared<Constants::CalibrationConstantsPhysicalPaladin>(
                                               double{block.beginRawMass}, double{block.measurementsPerRawMass}));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const LINEARCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.createTransformatorLinear(
        std::make_shared<Constants::CalibrationConstantsFunctionalLinear>(double{block.c0}, double{block.c1}),
        std::make_shared<Constants::CalibrationConstantsPhysicalLinear>());
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOFCalibrationBlock& block) {
    const auto physical = transformator.GetPhysicalConstants();
    MapTOFPhysicalConstants2QSF(physical.get(), block);
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<ICalibrationConstantsFunctionalTOF1>(
        functional, "TOFCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalTOF1");
    block.c0 = law.GetStoredC0();
    block.c1 = law.GetStoredC1();
    block.c2 = law.GetStoredC2();
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOFCalibrationRefBlock& block) {
    MapCCO2QSF(transformator, block.block);
    const auto mode = transformator.GetMeasurementModeInfo();
    if (!mode)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CCOConversionUtil::MapCCO2QSF(TOFCalibrationRefBlock): no mode of GetMeasurementModeInfo."));
    block.key = {mode->GetAcquisitionMode(), mode->GetPolarity(), mode->GetMSMSLevel(), mode->GetScanMode()};
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, IonTrapCalibrationBlock& block) {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<ICalibrationConstantsFunctionalPaladin>(
        functional, "IonTrapCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalPaladin");
    const auto physical = transformator.GetPhysicalConstants();
    const auto& scale = viewFor<ICalibrationConstantsPhysicalPaladin>(
        physical, "IonTrapCalibrationBlock", "GetPhysicalConstants", "ICalibrationConstantsPhysicalPaladin");
    block = {law.GetStoredC0(), law.GetStoredC1(), law.GetStoredC2(), scale.GetMeasurementsPerRawMass(),
             scale.GetBeginRawMass()};
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, LINEARCalibrationBlock& block) {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<ICalibrationConstantsFunctionalLinear>(
        functional, "LINEARCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalLinear");
    block = {law.GetStoredC0(), law.GetStoredC1()};
}

void CCOConversionUtil::MapTOFPhysicalConstants2QSF(const ICalibrationConstantsPhysical* physical,
                                                    TOFCalibrationBlock& block) {
    const auto* const axis = dynamic_cast<const ICalibrationConstantsPhysicalTOF*>(physical);
    if (axis == nullptr)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("Physical constants not of type ICalibrationConstantsPhysicalTOF."));
    block = {axis->GetTimeDelay(), axis->GetTimeBase(), 0.0, 1.0, 0.0};
}

}  // namespace kvan::calibration
