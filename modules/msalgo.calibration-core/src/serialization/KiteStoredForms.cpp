#include "serialization/KiteStoredForms.h"

#include "serialization/StoredBlocks.h"

namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

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

}  // namespace kvan::calibration
