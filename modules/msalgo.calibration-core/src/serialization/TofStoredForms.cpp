#include "serialization/TofStoredForms.h"

#include "serialization/CompensationExtensions.h"
#include "serialization/StoredBlocks.h"

#include <boost/numeric/conversion/cast.hpp>

namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;

std::shared_ptr<Compensation> compensationOf(const ICalibrationTransformator& transformator) {
    return std::dynamic_pointer_cast<Compensation>(transformator.GetFunctionalConstants());
}

void writeCompensatedTof2(const ICalibrationTransformator& transformator, const Compensation& compensation,
                          CalibBlobWriteAccess& access) {
    const auto& factors = compensation.GetCorrectionFactors();
    Tof2TempCorrCalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(transformator, block);
    block.factorsCount = boost::numeric_cast<std::uint32_t>(factors.size());
    block.factorsOffset = factors.empty() ? 0 : sizeof block;
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, factors);
}

void writeCompensatedTof2Reference(const ICalibrationTransformator& transformator, const Compensation& compensation,
                                   CalibBlobWriteAccess& access) {
    const auto& temperatures = compensation.GetMeasuredTemperatures();
    const auto& factors = compensation.GetCorrectionFactors();
    Tof2TempCorrCalibrationRefBlock block{};
    CCOConversionUtil::MapCCO2QSF(transformator, block);
    block.temperaturesCount = boost::numeric_cast<std::uint16_t>(temperatures.size());
    block.temperaturesOffset = sizeof block;
    block.factorsCount = boost::numeric_cast<std::uint16_t>(factors.size());
    block.factorsOffset = static_cast<std::uint32_t>(sizeof block + temperatures.size() * sizeof(double));
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, temperatures);
    CalibratorUtil::WriteDoubles(access, factors);
}

}  // namespace

std::uint16_t TofStoredForm::Type(const ICalibrationTransformator& transformator, BlobForm form) {
    const auto compensation = compensationOf(transformator);
    if (form == BlobForm::Plain)
        return compensation && compensation->GetCorrectionFactors().size() == 1 ? TOFCORRCalibrationBlock::Type
                                                                                : TOFCalibrationBlock::Type;
    if (!compensation || !holdsReferenceData(*compensation))
        return TOFCalibrationRefBlock::Type;
    return compensation->GetMeasuredTemperatures().size() == 1 && compensation->GetCorrectionFactors().size() == 1
               ? TOFCORRCalibrationRefBlock::Type
               : TOFCalibrationRefBlock::Type;
}

void TofStoredForm::Write(const ICalibrationTransformator& transformator, BlobForm form, CalibBlobWriteAccess& access) {
    switch (Type(transformator, form)) {
        case TOFCORRCalibrationBlock::Type:
            return writeBlock<TOFCORRCalibrationBlock>(transformator, access);
        case TOFCORRCalibrationRefBlock::Type:
            return writeBlock<TOFCORRCalibrationRefBlock>(transformator, access);
        case TOFCalibrationRefBlock::Type:
            return writeBlock<TOFCalibrationRefBlock>(transformator, access);
        default:
            return writeBlock<TOFCalibrationBlock>(transformator, access);
    }
}

std::uint16_t Tof2StoredForm::Type(const ICalibrationTransformator& transformator, BlobForm form) {
    const bool compensated = compensationOf(transformator) != nullptr;
    if (form == BlobForm::Plain)
        return compensated ? Tof2TempCorrCalibrationBlock::Type : TOF2CalibrationBlock::Type;
    return compensated ? Tof2TempCorrCalibrationRefBlock::Type : TOF2CalibrationRefBlock::Type;
}

void Tof2StoredForm::Write(const ICalibrationTransformator& transformator, BlobForm form,
                           CalibBlobWriteAccess& access) {
    const auto compensation = compensationOf(transformator);
    if (!compensation)
        return StoredBlocks<TOF2CalibrationBlock, TOF2CalibrationRefBlock>::Write(transformator, form, access);
    if (form == BlobForm::Plain)
        return writeCompensatedTof2(transformator, *compensation, access);
    requireReferenceData(*compensation);
    writeCompensatedTof2Reference(transformator, *compensation, access);
}

}  // namespace kvan::calibration
