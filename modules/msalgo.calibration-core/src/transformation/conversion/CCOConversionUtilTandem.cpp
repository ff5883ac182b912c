#include "transformation/conversion/CCOConversionUtil.h"
#include "utilities/IndexTruncation.h"

#include <boost/throw_exception.hpp>
#include <iostream>
#include <stdexcept>

/// The blocks of fragment spectra: KITE 1, KITE 2, PSD.

// The index range and the flag of KITE are stored only: no conversion looks at them. PSD cuts the ends of its range to
// whole numbers, since its block holds 32-bit integers; an unknown mode is reported on the standard output and leaves
// masses as they are.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

// Each block has the one of its time-of-flight law inside, which is mapped first. Coefficients of any number do not
// stand in a block: they are stored after it, and come and go here as arguments.

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const KITE1CalibrationBlock& block,
                                                                  const Values& coefficients, const Factory& factory) {
    return factory.createTransformatorKite(
        MapQSF2CCO(block.tof, factory), {.parentMass = block.parentMass,
                                         .correctionTime = block.correctionTime,
                                         .kiteTime = block.kiteTime,
                                         .calibrationParentMass = block.calibrationParentMass,
                                         .calibTimeRange = {double{block.calibTimeLow}, double{block.calibTimeHigh}},
                                         .indexRange = {std::int32_t{block.firstIndex}, std::int32_t{block.lastIndex}},
                                         .ignoreIndexBounds = block.ignore != 0,
                                         .coefficients = coefficients});
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& tof,
                                   const Constants::CalibrationPolynomialKITE1& polynomial,
                                   KITE1CalibrationBlock& block) {
    MapCCO2QSF(tof, block.tof);
    const auto [timeLow, timeHigh] = polynomial.GetCalibTimeRange();
    const auto [firstIndex, lastIndex] = polynomial.GetIndexRange();
    block.parentMass = polynomial.GetParentMass();
    block.correctionTime = polynomial.GetCorrectionTime();
    block.kiteTime = polynomial.GetKiteTime();
    block.calibrationParentMass = polynomial.GetCalibrationParentMass();
    block.calibTimeLow = timeLow;
    block.calibTimeHigh = timeHigh;
    block.firstIndex = firstIndex;
    block.lastIndex = lastIndex;
    block.ignore = polynomial.GetIgnoreIndexBounds() ? 1 : 0;
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const KITE2CalibrationBlock& block,
                                                                  const CCalibPolynomial& global,
                                                                  const std::vector<CCalibPolynomial>& parents,
                                                                  const Values& vc0, const Factory& factory) {
    return factory.createTransformatorKite2(
        MapQSF2CCO(block.tof, factory), {.parentMass = block.parentMass,
                                         .referenceTime = block.referenceTime,
                                         .measuredParentMass = block.measuredParentMass,
                                         .measuredReferenceTime = block.measuredReferenceTime,
                                         .indexRange = {std::int32_t{block.firstIndex}, std::int32_t{block.lastIndex}},
                                         .ignoreIndexBounds = block.ignoreIndexBounds != 0,
                                         .parents = parents,
                                         .global = global,
                                         .vc0 = vc0});
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& tof,
                                   const Constants::CalibrationPolynomialKITE2& polynomial,
                                   KITE2CalibrationBlock& block) {
    MapCCO2QSF(tof, block.tof);
    const auto& numbers = polynomial.GetNumbers();
    block.parentMass = numbers.parentMass;
    block.referenceTime = numbers.referenceTime;
    block.measuredParentMass = numbers.measuredParentMass;
    block.measuredReferenceTime = numbers.measuredReferenceTime;
    block.firstIndex = numbers.indexRange.first;
    block.lastIndex = numbers.indexRange.second;
    block.ignoreIndexBounds = numbers.ignoreIndexBounds ? 1 : 0;
}

CCOConversionUtil::TransformatorPtr CCOConversionUtil::MapQSF2CCO(const PSDCalibrationBlock& block, const Values& spc,
                                                                  const Values& ocp, const Values& classic,
                                                                  const Factory& factory) {
    using Polynomial = Constants::CalibrationPolynomialPSDFAST;
    // Before anything is built of the numbers.
    if (block.psdMode == ClassicPsdMode)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CCOConversionUtil::MapQSF2CCO: classic psd mode (mode 1) is not supported any more."));
    // Null where the mode is unknown: apparent masses are the masses then.
    std::shared_ptr<Polynomial> polynomial;
    if (block.psdMode == FastPsdMode)
        polynomial = std::make_shared<Polynomial>(Polynomial::Numbers{.uRefFull = block.uRefFull,
                                                                      .uSegment = block.uSegment,
                                                                      .calibrationMass = block.calibrationMass,
                                                                      .parentMass = block.parentMass,
                                                                      .minArg = static_cast<double>(block.minArg),
                                                                      .maxArg = static_cast<double>(block.maxArg),
                                                                      .spc = spc,
                                                                      .ocp = ocp,
                                                                      .classic = classic});
    else
        std::cout  // lint: output: this warning belongs to the conversion's callers, whatever they log
            << "warning: CCOConversionUtil::MapQSF2CCO: unknown psd mode." << std::endl;
    return factory.createTransformatorPsd(MapQSF2CCO(block.tof, factory), polynomial);
}

void CCOConversionUtil::MapCCO2QSF(const ICalibrationTransformator& tof,
                                   const Constants::CalibrationPolynomialPSDFAST* polynomial,
                                   PSDCalibrationBlock& block) {
    MapCCO2QSF(tof, block.tof);
    // The rest of the block is 0, the mode included.
    if (polynomial == nullptr)
        return;
    const auto& numbers = polynomial->GetNumbers();
    block.uRefFull = numbers.uRefFull;
    block.uSegment = numbers.uSegment;
    block.calibrationMass = numbers.calibrationMass;
    block.parentMass = numbers.parentMass;
    // Beyond 32 bits the nearest number that the block can hold.
    block.minArg = Utilities::truncateToIndex(numbers.minArg);
    block.maxArg = Utilities::truncateToIndex(numbers.maxArg);
    block.psdMode = FastPsdMode;
}

}  // namespace kvan::calibration
