#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "serialization/CalibrationTextFields.h"
#include "serialization/CompensationExtensions.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrittenConstants.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>

// Blobs and text of time of flight. A block holds one temperature and one factor at most: of more, the plain block is
// written and an extension after it. A reference needs both or none. The text has no place for any of them; who writes
// it says so in the log.
namespace kvan::calibration {

using namespace Constants;
using namespace tqclegacy::CALIBRATION;

namespace {

using Fields = CalibrationTextFields;
using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;

std::uint16_t tofTypeOf(const ICalibrationTransformator& transformator, BlobForm form) {
    const auto compensation = compensationOf(transformator);
    if (form == BlobForm::Plain)
        return compensation && compensation->GetCorrectionFactors().size() == 1 ? TOFCORRCalibrationBlock::Type
                                                                                : TOFCalibrationBlock::Type;
    // Reference data that are half there throw here.
    if (!compensation || !holdsReferenceData(*compensation))
        return TOFCalibrationRefBlock::Type;
    return compensation->GetMeasuredTemperatures().size() == 1 && compensation->GetCorrectionFactors().size() == 1
               ? TOFCORRCalibrationRefBlock::Type
               : TOFCalibrationRefBlock::Type;
}

void writeTofBlock(const ICalibrationTransformator& transformator, BlobForm form, CalibBlobWriteAccess& access) {
    switch (tofTypeOf(transformator, form)) {
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

// The numbers of a line are read one by one: arguments of a call have no order.

TransformatorPtr readTof(Fields& fields, std::size_t, const Factory& factory) {
    const double timeDelay = fields.Double();
    const double timeBase = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const int calibMode = fields.Int();
    return factory.createTransformatorTof(std::make_shared<CalibrationConstantsFunctionalTOF1>(c0, c1, c2, calibMode),
                                          std::make_shared<CalibrationConstantsPhysicalTOF>(timeDelay, timeBase));
}

void writeTof(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalTOF>();
    const auto& law = constants.law<ICalibrationConstantsFunctionalTOF1>();
    writer << axis.GetTimeDelay() << axis.GetTimeBase() << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2()
           << constants.calibMode();
}

BlockDescription describe(const TOFCalibrationBlock& block) {
    return {false, degreeOf(block.c2)};
}
BlockDescription describe(const TOFCalibrationRefBlock& block) {
    return describe(block.block);
}
BlockDescription describe(const TOFCORRCalibrationBlock& block) {
    return {true, degreeOf(block.tof.c2)};
}
BlockDescription describe(const TOFCORRCalibrationRefBlock& block) {
    return {true, degreeOf(block.tof.c2)};
}

template <class Block>
constexpr BlobType blobType(BlobForm form) {
    return {Block::Type, form, readBlock<Block>, describeBlock<Block, describe>};
}

constexpr BlobType g_types[] = {
    blobType<TOFCalibrationBlock>(BlobForm::Plain),
    blobType<TOFCORRCalibrationRefBlock>(BlobForm::Reference),
    blobType<TOFCORRCalibrationBlock>(BlobForm::Plain),
    blobType<TOFCalibrationRefBlock>(BlobForm::Reference),
};

constexpr const char* g_prefixes[] = {"V1.0CTOFCalibrationConstants", "V2.0CTOFCalibrationConstants",
                                      "V3.0CTOFCalibrationConstants"};

}  // namespace

/// Compensated constants with one value have blocks of their own; with several the plain block is written, and the
/// values follow as an extension.
const BlobForms g_tofBlobs = {g_types, tofTypeOf, writeTofBlock};

/// The operation is deliberate: the words that readers of these texts know.
const TextForms g_tofTexts = {
    CalibrationFamily::Tof, g_prefixes, "DeserializeFromStringLinear", false, readTof, writeTof};

}  // namespace kvan::calibration
