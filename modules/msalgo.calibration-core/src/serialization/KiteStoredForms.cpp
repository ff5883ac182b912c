#include "serialization/StoredBlocks.h"
#include "serialization/WrappedAxis.h"

#include <calibration-core/interfaces/ICalibrationTransformatorKITE.h>
#include <logger/logger.h>

// Blobs of both generations of KITE. Each begins with the block of its time axis and ends with arrays, whose offsets
// count from the start of the block and are taken as they are: arrays may overlap, stand in any order or leave gaps.
// Every offset and count is held against the bytes that are there before memory is taken. What follows the blob is
// looked for after the farthest byte that was read.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

using Polynomial = Constants::CalibrationPolynomialSimple;

/// A polynomial record that begins at the byte `start`, and where the next one begins.
struct StoredPolynomial {
    Polynomial polynomial;
    std::size_t end;
};

StoredPolynomial readPolynomial(CalibBlobReadAccess& access, std::size_t start) {
    if (!access.Seek(start))
        CalibratorUtil::ThrowReadFailure();
    const auto record = CalibratorUtil::ReadRecord<CalibPolynomialRecord>(access);
    auto coefficients = CalibratorUtil::ReadDoubles(access, start, record.coefficientsOffset, record.coefficientsCount);
    return {{std::move(coefficients), record.argLow, record.argHigh, record.parentMass},
            start + record.coefficientsOffset + record.coefficientsCount * sizeof(double)};
}

/// The count is held against the bytes that are left: a record takes at least its head.
std::vector<Polynomial> readPolynomials(CalibBlobReadAccess& access, std::size_t start, std::size_t count) {
    std::vector<Polynomial> polynomials;
    if (count == 0)
        return polynomials;
    if (!access.Seek(start) || count > access.BytesLeft() / sizeof(CalibPolynomialRecord))
        CalibratorUtil::ThrowReadFailure();
    // Each one begins where the coefficients of the one before end, by its own claim.
    for (std::size_t k = 0; k < count; ++k) {
        StoredPolynomial stored = readPolynomial(access, start);
        polynomials.push_back(std::move(stored.polynomial));
        start = stored.end;
    }
    return polynomials;
}

Constants::CalibrationPolynomialKITE2::Numbers withoutInterpolation(
    const Constants::CalibrationPolynomialKITE2& polynomial) {
    auto numbers = polynomial.GetNumbers();
    if (numbers.interpolationMode == 0)
        return numbers;
    // Scaling to its own mass changes nothing, so that mode 0 gives this polynomial back.
    numbers.parents = {polynomial.GetCurrentPolynomial()};
    numbers.vc0.clear();
    return numbers;
}

void warnOfLostInterpolation() {
    const auto logger = logging::Logger::getLogger("kvan.calibration_core.Kite2Transformator");
    KVAN_LOG(logger, WARN)
        << "Of an interpolated KITE 2 calibration only the polynomial for its parent mass is kept in its blob.";
}

std::size_t storedSize(const Polynomial& polynomial) {
    return sizeof(CalibPolynomialRecord) + polynomial.coefficients.size() * sizeof(double);
}

void writePolynomial(CalibBlobWriteAccess& access, const Polynomial& polynomial) {
    CalibPolynomialRecord record{};
    record.argLow = polynomial.argLow;
    record.argHigh = polynomial.argHigh;
    record.parentMass = polynomial.parentMass;
    record.coefficientsCount = storedCount(polynomial.coefficients.size());
    record.coefficientsOffset = sizeof record;
    CalibratorUtil::WriteRecord(access, record);
    CalibratorUtil::WriteDoubles(access, polynomial.coefficients);
}

void writeKite1(const ICalibrationTransformator& kite, BlobForm, CalibBlobWriteAccess& access) {
    const auto held = polynomialOf<Constants::CalibrationPolynomialKITE1, ICalibrationTransformatorKITE>(kite);
    const auto& polynomial = *held;
    const auto& coefficients = polynomial.GetCalibrationCoefficients();
    KITE1CalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(axisInside(kite), polynomial, block);
    block.coefficientsOffset = sizeof block;
    block.coefficientsCount = storedCount(coefficients.size());
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, coefficients);
}

TransformatorPtr readKite1(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<KITE1CalibrationBlock>(access);
    const auto coefficients =
        CalibratorUtil::ReadDoubles(access, start, block.coefficientsOffset, block.coefficientsCount);
    return CCOConversionUtil::MapQSF2CCO(block, coefficients, factory);
}

void writeKite2(const ICalibrationTransformator& kite, BlobForm, CalibBlobWriteAccess& access) {
    const auto held = polynomialOf<Constants::CalibrationPolynomialKITE2, ICalibrationTransformatorKITE>(kite);
    const auto& polynomial = *held;
    if (polynomial.GetNumbers().interpolationMode != 0)
        warnOfLostInterpolation();
    const auto numbers = withoutInterpolation(polynomial);
    // Global polynomial, parents and VC0 follow the block without gaps.
    std::size_t vc0Offset = sizeof(KITE2CalibrationBlock) + storedSize(numbers.global);
    const std::size_t firstParentOffset = vc0Offset;
    for (const Polynomial& parent : numbers.parents)
        vc0Offset += storedSize(parent);

    KITE2CalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(axisInside(kite), polynomial, block);
    block.parentsCount = storedCount(numbers.parents.size());
    block.vc0Count = storedCount(numbers.vc0.size());
    block.globalOffset = sizeof block;
    block.firstParentOffset = storedOffset(firstParentOffset);
    block.vc0Offset = storedOffset(vc0Offset);
    CalibratorUtil::WriteRecord(access, block);
    writePolynomial(access, numbers.global);
    for (const Polynomial& parent : numbers.parents)
        writePolynomial(access, parent);
    CalibratorUtil::WriteDoubles(access, numbers.vc0);
}

TransformatorPtr readKite2(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<KITE2CalibrationBlock>(access);
    const Polynomial global = readPolynomial(access, start + block.globalOffset).polynomial;
    const auto parents = readPolynomials(access, start + block.firstParentOffset, block.parentsCount);
    const auto vc0 = CalibratorUtil::ReadDoubles(access, start, block.vc0Offset, block.vc0Count);
    return CCOConversionUtil::MapQSF2CCO(block, global, parents, vc0, factory);
}

constexpr BlobType g_kite1Types[] = {
    {KITE1CalibrationBlock::Type, BlobForm::Plain, readKite1, describeBlock<KITE1CalibrationBlock>}};
constexpr BlobType g_kite2Types[] = {
    {KITE2CalibrationBlock::Type, BlobForm::Plain, readKite2, describeBlock<KITE2CalibrationBlock>}};

}  // namespace

/// The block of the time axis inside, the numbers of the polynomial, its coefficients.
const BlobForms g_kite1Blobs = {g_kite1Types, typeOfPlain<KITE1CalibrationBlock>, writeKite1};

/// The block of the time axis inside, the numbers of the polynomial, the global polynomial, the parent polynomials one
/// after the other, the VC0 coefficients. The interpolation mode has no place: it is 0. Of another mode the polynomial
/// for the parent mass is written as the only one, which is the same law.
const BlobForms g_kite2Blobs = {g_kite2Types, typeOfPlain<KITE2CalibrationBlock>, writeKite2};

}  // namespace kvan::calibration
