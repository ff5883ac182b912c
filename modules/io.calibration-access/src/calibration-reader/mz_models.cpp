#include "calibration-reader/mz_models.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

// From the columns of a row to a transformator, one function a model. Columns count from the first of the model; types
// are strict, see `TypedRow`; whether the constants make a law is for the factory to say. Time-of-flight models have
// their time axis in the state, not in the row, and fail without it.
namespace kvan::io::calibration {

namespace {

namespace constants = ::kvan::calibration::Constants;
using TransformatorPtr = std::shared_ptr<::kvan::calibration::ICalibrationTransformator>;

const ::kvan::calibration::ICalibrationTransformatorFactory& factory() {
    return *::kvan::calibration::Transformation::CalibrationTransformatorFactory::instance();
}

// Column: value, counted from the first of the model. Tolerated: anything in columns that are not listed.

/// 0: c0, 1: c1, 2: c2. The time axis is the digitizer's.
TransformatorPtr makeTof(const tables::TypedRow& row, int base, const DigitizerConstants& digitizer) {
    return factory().createTransformatorTof(
        std::make_shared<constants::CalibrationConstantsFunctionalTOF1>(row.real(base), row.real(base + 1),
                                                                        row.real(base + 2)),
        std::make_shared<constants::CalibrationConstantsPhysicalTOF>(digitizer.delay, digitizer.timebase));
}

/// As TOF; then from 3 on anything but a blob, then c0, c2, lowest and highest mass of the correction, and last its
/// coefficients as a blob.
TransformatorPtr makeTofGpx(const tables::TypedRow& row, int base, const DigitizerConstants& digitizer) {
    constexpr int numbersOfTof = 3;
    constexpr int numbersOfCorrection = 4;
    const TransformatorPtr tof = makeTof(row, base, digitizer);
    const std::optional<int> blob = row.findBlob(base + numbersOfTof);
    if (!blob)
        row.fail(base + numbersOfTof - 1, "no blob of coefficients behind it");
    const std::vector<double> coefficients = row.reals(*blob);
    const int first = *blob - numbersOfCorrection;
    if (first < base + numbersOfTof)
        row.fail(*blob, "a blob where numbers of the correction stand");
    return factory().createTransformatorGPX(
        tof, std::make_shared<constants::CalibrationPolynomialGPX>(coefficients, row.real(first), row.real(first + 1),
                                                                   row.real(first + 2), row.real(first + 3), true));
}

/// 0: c0, 1: c1, 2: measurements per raw mass, 3: begin of the raw mass scale.
TransformatorPtr makePaladin(const tables::TypedRow& row, int base) {
    return factory().createTransformatorTrap(
        std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(row.real(base), row.real(base + 1), 0.0),
        std::make_shared<constants::CalibrationConstantsPhysicalPaladin>(row.real(base + 3), row.real(base + 2)));
}

struct FtmsNumbers {
    int calibMode;
    double alpha;
    double beta;
    double freqHigh;
    bool quadraticFlag;
    int ftmsRawMode;
    int size;
    double freqLow;
    double freqWidth;
};

/// The class follows the calibration mode.
TransformatorPtr makeFtms(const FtmsNumbers& numbers) {
    return factory().createTransformatorIcr(
        factory().createConstantsFunctionalIcr(numbers.calibMode, numbers.ftmsRawMode, numbers.size,
                                               numbers.quadraticFlag, numbers.alpha, numbers.beta, numbers.freqHigh),
        std::make_shared<constants::CalibrationConstantsPhysicalFTMS>(numbers.freqLow, numbers.freqWidth, numbers.size,
                                                                      numbers.calibMode, numbers.ftmsRawMode));
}

/// 0: calibration mode, 1: beta, 2: freqHigh, 3: FTMS raw mode, 4: size, 5: freqLow, 6: freqWidth.
TransformatorPtr makeFtms04(const tables::TypedRow& row, int base) {
    return makeFtms({.calibMode = row.smallInteger(base),
                     .alpha = 0.0,
                     .beta = row.real(base + 1),
                     .freqHigh = row.real(base + 2),
                     .quadraticFlag = false,
                     .ftmsRawMode = row.smallInteger(base + 3),
                     .size = row.smallInteger(base + 4),
                     .freqLow = row.real(base + 5),
                     .freqWidth = row.real(base + 6)});
}

/// 0: calibration mode, 1: alpha, 2: beta, 3: freqHigh, 4: quadratic flag, 5: FTMS raw mode, 6: size, 7: freqLow,
/// 8: freqWidth.
TransformatorPtr makeFtms1356(const tables::TypedRow& row, int base) {
    return makeFtms({.calibMode = row.smallInteger(base),
                     .alpha = row.real(base + 1),
                     .beta = row.real(base + 2),
                     .freqHigh = row.real(base + 3),
                     .quadraticFlag = row.integer(base + 4) != 0,
                     .ftmsRawMode = row.smallInteger(base + 5),
                     .size = row.smallInteger(base + 6),
                     .freqLow = row.real(base + 7),
                     .freqWidth = row.real(base + 8)});
}

const DigitizerConstants& required(const std::optional<DigitizerConstants>& digitizer, const char* model) {
    if (!digitizer)
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string("Missing digitizer constants, unable to load ") + model +
                                                 " m/z transformators"));
    return *digitizer;
}

}  // namespace

MzModel mzModelOf(std::int64_t modelType) {
    if (modelType < static_cast<int>(MzModel::Tof) || modelType > static_cast<int>(MzModel::Ftms1356))
        BOOST_THROW_EXCEPTION(std::invalid_argument("Unknown m / z calibration model " + std::to_string(modelType)));
    return static_cast<MzModel>(modelType);
}

TransformatorPtr makeMzTrafo(MzModel model, const tables::TypedRow& row, int base,
                             const std::optional<DigitizerConstants>& digitizer) {
    switch (model) {
        case MzModel::Tof:
            return makeTof(row, base, required(digitizer, "tof"));
        case MzModel::TofGpx:
            return makeTofGpx(row, base, required(digitizer, "tof gpx"));
        case MzModel::Paladin:
            return makePaladin(row, base);
        case MzModel::Ftms04:
            return makeFtms04(row, base);
        case MzModel::Ftms1356:
            return makeFtms1356(row, base);
    }
    BOOST_THROW_EXCEPTION(
        std::runtime_error("Unknown m/z calibration model " + std::to_string(static_cast<int>(model))));
}

}  // namespace kvan::io::calibration
