#include "transformation/conversion/CCOConversionUtil.h"

#include "constants/FtmsModes.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/interfaces/MeasurementModeInfo.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

// From the blocks of a blob to constants and back. Each reader makes both sets of constants and gives them away to the
// factory, which copies nothing; each writer asks the transformator for copies and fails, by the names of block and
// interface, where they are of another family. Only FTMS blocks hold a calibration mode.
//
// A compensated block of a spectrum has one array, which is both its temperatures and its factors.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

using Values = CCOConversionUtil::Values;

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

const ICalibrationConstantsFunctionalTemperatureCompensation& compensationOf(
    const std::shared_ptr<ICalibrationConstantsFunctional>& functional, const char* block) {
    return viewFor<ICalibrationConstantsFunctionalTemperatureCompensation>(
        functional, block, "GetFunctionalConstants", "ICalibrationConstantsFunctionalTemperatureCompensation");
}

// The blocks are packed: their numbers are handed on by value.

// The calibration mode of these laws is 0: their blocks have no place for it.
Constants::CalibrationConstantsFunctionalTOF1 lawOf(const TOFCalibrationBlock& block) {
    return {block.c0, block.c1, block.c2};
}

Constants::CalibrationConstantsFunctionalTOF2 lawOf(const TOF2CalibrationBlock& block) {
    return {block.c0, block.c1, block.c2, block.c3, block.c4};
}

template <class Block>
std::shared_ptr<ICalibrationConstantsPhysical> axisOf(const Block& block) {
    return std::make_shared<Constants::CalibrationConstantsPhysicalTOF>(double{block.timeDelay},
                                                                        double{block.timeBase});
}

template <class Compensated, class Block>
std::shared_ptr<Compensated> compensatedLawOf(const Block& block, std::int32_t compensationCode, Values temperatures,
                                              Values factors) {
    return std::make_shared<Compensated>(lawOf(block), std::move(temperatures), std::move(factors),
                                         CCOConversionUtil::modeOfCode(compensationCode));
}

using CompensatedTof1 = Constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation;
using CompensatedTof2 = Constants::CalibrationConstantsFunctionalTOF2TemperatureCompensation;

}  // namespace

/// Codes of a block count otherwise than modes: 255 is what writers put for none.
ENUM_TEMPERATURE_COMPENSATION_MODE CCOConversionUtil::modeOfCode(std::int32_t compensationCode) {
    switch (compensationCode) {
        case 0:
            return TEMPERATURE_COMPENSATION_MEASURED;
        case 1:
            return TEMPERATURE_COMPENSATION_ADAPTED_ONE;
        default:
            return TEMPERATURE_COMPENSATION_NONE;
    }
}

std::int32_t CCOConversionUtil::codeOfMode(ENUM_TEMPERATURE_COMPENSATION_MODE mode) {
    switch (mode) {
        case TEMPERATURE_COMPENSATION_MEASURED:
            return 0;
        case TEMPERATURE_COMPENSATION_ADAPTED_ONE:
            return 1;
        default:
            return 255;
    }
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOFCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.adoptConstants(CalibrationFamily::Tof,
                                  std::make_shared<Constants::CalibrationConstantsFunctionalTOF1>(lawOf(block)),
                                  axisOf(block));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOF2CalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.adoptConstants(CalibrationFamily::Tof2,
                                  std::make_shared<Constants::CalibrationConstantsFunctionalTOF2>(lawOf(block)),
                                  axisOf(block));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOFCORRCalibrationBlock& block,
                                                                  const Factory& factory) {
    const Values value{block.correctionFactor};
    return factory.adoptConstants(CalibrationFamily::Tof,
                                  compensatedLawOf<CompensatedTof1>(block.tof, block.compensationCode, value, value),
                                  axisOf(block.tof));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const Tof2TempCorrCalibrationBlock& block,
                                                                  Values factors, const Factory& factory) {
    Values temperatures = factors;
    return factory.adoptConstants(CalibrationFamily::Tof2,
                                  compensatedLawOf<CompensatedTof2>(block.tof2, block.compensationCode,
                                                                    std::move(temperatures), std::move(factors)),
                                  axisOf(block.tof2));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const TOFCORRCalibrationRefBlock& block,
                                                                  const Factory& factory) {
    return asReference(factory.adoptConstants(CalibrationFamily::Tof,
                                              compensatedLawOf<CompensatedTof1>(block.tof, block.compensationCode,
                                                                                {double{block.referenceTemperature}},
                                                                                {double{block.correctionFactor}}),
                                              axisOf(block.tof)),
                       block.key);
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const Tof2TempCorrCalibrationRefBlock& block,
                                                                  Values temperatures, Values factors,
                                                                  const Factory& factory) {
    // A reference that was measured without temperatures is no compensated one.
    if (temperatures.empty() && factors.empty())
        return asReference(MapQSF2CCO(block.tof2, factory), block.key);
    return asReference(
        factory.adoptConstants(CalibrationFamily::Tof2,
                               compensatedLawOf<CompensatedTof2>(block.tof2, block.compensationCode,
                                                                 std::move(temperatures), std::move(factors)),
                               axisOf(block.tof2)),
        block.key);
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const FTMSCalibrationBlock& block,
                                                                  const Factory& factory) {
    // The mode is given to both sets: the line of the axis depends on it.
    return factory.adoptConstants(
        CalibrationFamily::Ftms,
        factory.createConstantsFunctionalIcr(block.calibMode, block.ftmsRawMode, block.size, block.quadraticFlag != 0,
                                             block.alpha, block.beta, block.freqHigh),
        std::make_shared<Constants::CalibrationConstantsPhysicalFTMS>(double{block.freqLow}, double{block.freqWidth},
                                                                      int{block.size}, int{block.calibMode},
                                                                      int{block.ftmsRawMode}));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::asReference(TransformatorPtr transformator,
                                                                   const CalibKey& key) {
    // Whatever has a mode is a reference and is written as one.
    transformator->SetMeasurementModeInfo(std::make_shared<Transformation::MeasurementModeInfo>(
        key.polarity, key.acquisitionMode, key.scanMode, key.msLevel));
    return transformator;
}

CalibKey CCOConversionUtil::keyOf(const ICalibrationTransformator& transformator) {
    const auto mode = transformator.GetMeasurementModeInfo();
    if (!mode)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("CCOConversionUtil::MapCCO2QSF: no mode of GetMeasurementModeInfo."));
    // The bytes of a key stand in another order than the arguments of a mode.
    return {mode->GetAcquisitionMode(), mode->GetPolarity(), mode->GetMSMSLevel(), mode->GetScanMode()};
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const IonTrapCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.adoptConstants(CalibrationFamily::Paladin,
                                  std::make_shared<Constants::CalibrationConstantsFunctionalPaladin>(
                                      double{block.c0}, double{block.c1}, double{block.c2}),
                                  std::make_shared<Constants::CalibrationConstantsPhysicalPaladin>(
                                      double{block.beginRawMass}, double{block.measurementsPerRawMass}));
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const LINEARCalibrationBlock& block,
                                                                  const Factory& factory) {
    return factory.adoptConstants(
        CalibrationFamily::Linear,
        std::make_shared<Constants::CalibrationConstantsFunctionalLinear>(double{block.c0}, double{block.c1}),
        std::make_shared<Constants::CalibrationConstantsPhysicalLinear>());
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOFCalibrationBlock& block) {
    // The axis first: it fails in its own words.
    const auto physical = transformator.GetPhysicalConstants();
    MapTOFPhysicalConstants2QSF(physical.get(), block);
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<ICalibrationConstantsFunctionalTOF1>(
        functional, "TOFCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalTOF1");
    block.c0 = law.GetStoredC0();
    block.c1 = law.GetStoredC1();
    block.c2 = law.GetStoredC2();
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOF2CalibrationBlock& block) {
    const auto physical = transformator.GetPhysicalConstants();
    const auto& axis = viewFor<ICalibrationConstantsPhysicalTOF>(
        physical, "TOF2CalibrationBlock", "GetPhysicalConstants", "ICalibrationConstantsPhysicalTOF");
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<Constants::CalibrationConstantsFunctionalTOF2>(
        functional, "TOF2CalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalTOF2");
    // c4 is the shift.
    block = {axis.GetTimeDelay(), axis.GetTimeBase(), law.GetStoredC0(), law.GetStoredC1(),
             law.GetStoredC2(),   law.GetStoredC3(),  law.GetShift()};
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOFCORRCalibrationBlock& block) {
    MapCCO2QSF(transformator, block.tof);
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = compensationOf(functional, "TOFCORRCalibrationBlock");
    block.compensationCode = codeOfMode(law.GetCompensationMode());
    // The type was chosen by the number of values: there is one.
    block.correctionFactor = law.GetCorrectionFactors().at(0);
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, TOFCORRCalibrationRefBlock& block) {
    MapCCO2QSF(transformator, block.tof);
    block.key = keyOf(transformator);
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = compensationOf(functional, "TOFCORRCalibrationRefBlock");
    block.compensationCode = codeOfMode(law.GetCompensationMode());
    block.referenceTemperature = law.GetMeasuredTemperatures().at(0);
    block.correctionFactor = law.GetCorrectionFactors().at(0);
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator,
                                   Tof2TempCorrCalibrationBlock& block) {
    MapCCO2QSF(transformator, block.tof2);
    const auto functional = transformator.GetFunctionalConstants();
    block.compensationCode =
        codeOfMode(compensationOf(functional, "Tof2TempCorrCalibrationBlock").GetCompensationMode());
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator,
                                   Tof2TempCorrCalibrationRefBlock& block) {
    MapCCO2QSF(transformator, block.tof2);
    block.key = keyOf(transformator);
    const auto functional = transformator.GetFunctionalConstants();
    block.compensationCode =
        codeOfMode(compensationOf(functional, "Tof2TempCorrCalibrationRefBlock").GetCompensationMode());
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& transformator, FTMSCalibrationBlock& block) {
    const auto functional = transformator.GetFunctionalConstants();
    const auto& law = viewFor<ICalibrationConstantsFunctionalFTMS>(
        functional, "FTMSCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalFTMS");
    const auto physical = transformator.GetPhysicalConstants();
    const auto& axis = viewFor<ICalibrationConstantsPhysicalFTMS>(
        physical, "FTMSCalibrationBlock", "GetPhysicalConstants", "ICalibrationConstantsPhysicalFTMS");
    // Both sets of constants hold the mode; that of the law counts.
    const int mode = functional->GetCalibMode();
    block.calibMode = mode;
    block.ftmsRawMode = law.GetFTMSRawMode();
    block.size = axis.GetSize();
    block.freqLow = axis.GetFreqLow();
    block.freqWidth = axis.GetFreqWidth();
    // Each class of constants has a view of its own; the mode says which one must be there.
    using Constants::FtmsLaw;
    switch (Constants::ftmsModeOf(mode).law) {
        case FtmsLaw::Linear: {
            const auto& linear = viewFor<ICalibrationConstantsFunctionalFTMS04>(
                functional, "FTMSCalibrationBlock", "GetFunctionalConstants", "ICalibrationConstantsFunctionalFTMS04");
            // The linear law has neither; readers of it do not look.
            block.alpha = 0.0;
            block.beta = linear.GetBeta();
            block.freqHigh = linear.GetFreqHigh();
            block.quadraticFlag = 0;
            return;
        }
        case FtmsLaw::Quadratic:
        case FtmsLaw::ConstantsOnly: {
            const auto& quadratic = viewFor<ICalibrationConstantsFunctionalFTMS1356>(
                functional, "FTMSCalibrationBlock", "GetFunctionalConstants",
                "ICalibrationConstantsFunctionalFTMS1356");
            block.alpha = quadratic.GetAlpha();
            block.beta = quadratic.GetBeta();
            block.freqHigh = quadratic.GetFreqHigh();
            block.quadraticFlag = law.GetQuadraticFlag() ? 1 : 0;
            return;
        }
        case FtmsLaw::Index:
            BOOST_THROW_EXCEPTION(std::invalid_argument("MapCCO2QSF: CalibMode 2 not implemented [QX]."));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "MapCCO2QSF: Invalid FTMS Mode: 0, 1, 2, 3, 4, 5 and 6 are possible, got " + std::to_string(mode)));
    }
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
    // The law is no law: c1 = 1.0 only keeps the conversion of c1 finite.
    block = {axis->GetTimeDelay(), axis->GetTimeBase(), 0.0, 1.0, 0.0};
}

}  // namespace kvan::calibration
