#include "serialization/KiteStoredForms.h"

#include "serialization/StoredBlocks.h"

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
    numbers.parents = {polynomial.GetCurrentPolynomial()};
    numbers.vc0.clear();
    return numbers;
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

}  // namespace

std::uint16_t Kite1StoredForm::Type(BlobForm form) {
    requirePlainForm(form);
    return KITE1CalibrationBlock::Type;
}

void Kite1StoredForm::Write(const ICalibrationTransformator& tof,
                            const Constants::CalibrationPolynomialKITE1& polynomial, CalibBlobWriteAccess& access) {
    const auto& coefficients = polynomial.GetCalibrationCoefficients();
    KITE1CalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(tof, polynomial, block);
    block.coefficientsOffset = sizeof block;
    block.coefficientsCount = storedCount(coefficients.size());
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, coefficients);
}

std::shared_ptr<ICalibrationTransformator> Kite1StoredForm::Read(CalibBlobReadAccess& access,
                                                                 const ICalibrationTransformatorFactory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<KITE1CalibrationBlock>(access);
    const auto coefficients =
        CalibratorUtil::ReadDoubles(access, start, block.coefficientsOffset, block.coefficientsCount);
    return CCOConversionUtil::MapQSF2CCO(block, coefficients, factory);
}

std::uint16_t Kite2StoredForm::Type(BlobForm form) {
    requirePlainForm(form);
    return KITE2CalibrationBlock::Type;
}

void Kite2StoredForm::Write(const ICalibrationTransformator& tof,
                            const Constants::CalibrationPolynomialKITE2& polynomial, CalibBlobWriteAccess& access) {
    const auto numbers = withoutInterpolation(polynomial);
    std::size_t vc0Offset = sizeof(KITE2CalibrationBlock) + storedSize(numbers.global);
    const std::size_t firstParentOffset = vc0Offset;
    for (const Polynomial& parent : numbers.parents)
        vc0Offset += storedSize(parent);

    KITE2CalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(tof, polynomial, block);
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

std::shared_ptr<ICalibrationTransformator> Kite2StoredForm::Read(CalibBlobReadAccess& access,
                                                                 const ICalibrationTransformatorFactory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<KITE2CalibrationBlock>(access);
    const Polynomial global = readPolynomial(access, start + block.globalOffset).polynomial;
    const auto parents = readPolynomials(access, start + block.firstParentOffset, block.parentsCount);
    const auto vc0 = CalibratorUtil::ReadDoubles(access, start, block.vc0Offset, block.vc0Count);
    return CCOConversionUtil::MapQSF2CCO(block, global, parents, vc0, factory);
}

}  // namespace kvan::calibration
