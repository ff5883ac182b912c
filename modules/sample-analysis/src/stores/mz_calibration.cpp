#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <sample-analysis/calibration_database_writer.h>

#include <boost/throw_exception.hpp>
#include <cstring>
#include <stdexcept>

// From a law to the row of a calibration database: the model is chosen by the family, its numbers are the constants of
// the law in the order of docs/calibration-database.md. A law that has something for which its model has no column,
// such as the quadratic term of an ion trap, is refused: written without it, it would be read as another law.

namespace kvan::sample::stores {

namespace {

using namespace kvan::calibration;
using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;

/// The view of constants, or null.
template <class View, class Constants>
const View* as(const std::shared_ptr<Constants>& constants) {
    return dynamic_cast<const View*>(constants.get());
}

[[noreturn]] void failWithoutModel() {
    BOOST_THROW_EXCEPTION(std::invalid_argument("A calibration database has no model for this law."));
}

/// After those of the law come two numbers that nobody reads.
MzCalibration tofOf(const ICalibrationConstantsFunctionalTOF1& law) {
    return {.model = 1, .numbers = {law.GetStoredC0(), law.GetStoredC1(), law.GetStoredC2(), {}, {}}};
}

MzCalibration correctedOf(const ICalibrationTransformatorGPX& correction) {
    MzCalibration calibration = mzCalibrationOf(correction.GetTransformator());
    const auto polynomial = correction.GetPolynomial();
    // A correction that is switched off has no model either: it would be switched on by the reader.
    if (calibration.model != 1 || !polynomial || !polynomial->GetUse())
        failWithoutModel();
    const auto [lower, upper] = polynomial->GetGlobalMassRange();
    const auto& coefficients = polynomial->GetCoefficients();
    // A corrected law is that of model 1 and four numbers more, then the coefficients.
    calibration.model = 2;
    calibration.numbers.insert(calibration.numbers.end(), {polynomial->GetC0(), polynomial->GetC2(), lower, upper});
    calibration.coefficients.emplace(coefficients.size() * sizeof(double));
    std::memcpy(calibration.coefficients->data(), coefficients.data(), calibration.coefficients->size());
    return calibration;
}

MzCalibration trapOf(const ICalibrationConstantsFunctionalPaladin& law,
                     const std::shared_ptr<ICalibrationConstantsPhysical>& physical) {
    const auto* const scale = as<ICalibrationConstantsPhysicalPaladin>(physical);
    if (scale == nullptr || law.GetStoredC2() != 0.0)
        failWithoutModel();
    return {.model = 3,
            .numbers = {law.GetStoredC0(), law.GetStoredC1(), scale->GetMeasurementsPerRawMass(),
                        scale->GetBeginRawMass()}};
}

MzCalibration ftmsOf(const TransformatorPtr& transformator) {
    const auto functional = transformator->GetFunctionalConstants();
    const auto physical = transformator->GetPhysicalConstants();
    const auto* const axis = as<ICalibrationConstantsPhysicalFTMS>(physical);
    const auto* const linear = as<ICalibrationConstantsFunctionalFTMS04>(functional);
    const auto* const quadratic = as<ICalibrationConstantsFunctionalFTMS1356>(functional);
    if (axis == nullptr || (linear == nullptr && quadratic == nullptr))
        failWithoutModel();
    const auto& common = dynamic_cast<const ICalibrationConstantsFunctionalFTMS&>(*functional);
    MzCalibration calibration{.model = linear != nullptr ? 4 : 5, .numbers = {double(functional->GetCalibMode())}};
    auto& numbers = calibration.numbers;
    if (linear != nullptr)
        numbers.insert(numbers.end(), {linear->GetBeta(), linear->GetFreqHigh()});
    else
        numbers.insert(numbers.end(), {quadratic->GetAlpha(), quadratic->GetBeta(), quadratic->GetFreqHigh(),
                                       common.GetQuadraticFlag() ? 1.0 : 0.0});
    numbers.insert(numbers.end(), {double(common.GetFTMSRawMode()), double(axis->GetSize()), axis->GetFreqLow(),
                                   axis->GetFreqWidth()});
    return calibration;
}

}  // namespace

MzCalibration mzCalibrationOf(const TransformatorPtr& transformator) {
    if (const auto* const correction = as<ICalibrationTransformatorGPX>(transformator))
        return correctedOf(*correction);
    switch (familyOf(*transformator)) {
        case CalibrationFamily::Tof:
        case CalibrationFamily::CompensatedTof:
            return tofOf(
                dynamic_cast<const ICalibrationConstantsFunctionalTOF1&>(*transformator->GetFunctionalConstants()));
        case CalibrationFamily::Paladin:
            return trapOf(
                dynamic_cast<const ICalibrationConstantsFunctionalPaladin&>(*transformator->GetFunctionalConstants()),
                transformator->GetPhysicalConstants());
        case CalibrationFamily::Ftms:
            return ftmsOf(transformator);
        default:
            failWithoutModel();
    }
}

Digitizer digitizerOf(const ICalibrationTransformator& transformator) {
    const auto physical = transformator.GetPhysicalConstants();
    const auto* const axis = as<ICalibrationConstantsPhysicalTOF>(physical);
    if (axis == nullptr)
        failWithoutModel();
    return {.delay = axis->GetTimeDelay(), .timebase = axis->GetTimeBase()};
}

}  // namespace kvan::sample::stores
