#include "constants/FtmsModes.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "serialization/CalibrationTextFields.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrittenConstants.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFTMS.h>

// Blob and text of the Fourier transform family. Both laws share block and line: the linear one has no alpha and no
// flag, which are written as 0. The mode decides which constants are read; a text knows fewer modes than a block, whose
// mode 3 and 6 only the factory refuses.
namespace kvan::calibration {

using namespace Constants;
using namespace tqclegacy::CALIBRATION;

namespace {

using Fields = CalibrationTextFields;

/// The linear law has words of its own for constants of another one.
void writeFtmsBlock(const ICalibrationTransformator& transformator, BlobForm form, CalibBlobWriteAccess& access) {
    // By the class, not by the constants, which may be of any law.
    const bool isLinear = dynamic_cast<const ICalibrationTransformatorFTMSQuadratic*>(&transformator) == nullptr;
    if (isLinear &&
        !std::dynamic_pointer_cast<ICalibrationConstantsFunctionalFTMS04>(transformator.GetFunctionalConstants()))
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFTMS04::SerializeToBlob: expected functional constants to be of type "
            "ICalibrationConstantsFunctionalFTMS04."));
    writePlain<FTMSCalibrationBlock>(transformator, form, access);
}

// The numbers of a line are read one by one: arguments of a call have no order.

/// Throws for the calibration modes that no text has.
void checkFtmsMode(int mode) {
    switch (ftmsModeOf(mode).law) {
        case FtmsLaw::Linear:
        case FtmsLaw::Quadratic:
            return;
        case FtmsLaw::ConstantsOnly:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: mode 3 or 6 not supported."));
        case FtmsLaw::Index:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: mode 2 not supported."));
        case FtmsLaw::Unknown:
            BOOST_THROW_EXCEPTION(std::runtime_error(
                "CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: unknown FTMS operation "
                "mode: " +
                std::to_string(mode)));
    }
}

TransformatorPtr readFtms(Fields& fields, std::size_t, const Factory& factory) {
    const double alpha = fields.Double();
    const double beta = fields.Double();
    const double freqHigh = fields.Double();
    const double freqLow = fields.Double();
    const double freqWidth = fields.Double();
    const int calibMode = fields.Int();
    // Before the numbers after it, which a mode without a law need not have.
    checkFtmsMode(calibMode);
    const int ftmsRawMode = fields.Int();
    const int size = fields.Int();
    const bool quadraticFlag = fields.Int() != 0;
    return factory.createTransformatorIcr(
        factory.createConstantsFunctionalIcr(calibMode, ftmsRawMode, size, quadraticFlag, alpha, beta, freqHigh),
        std::make_shared<CalibrationConstantsPhysicalFTMS>(freqLow, freqWidth, size, calibMode, ftmsRawMode));
}

void writeFtms(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalFTMS>();
    if (const auto* const linear = constants.lawIf<ICalibrationConstantsFunctionalFTMS04>()) {
        // The linear law has no alpha.
        writer << 0.0 << linear->GetBeta() << linear->GetFreqHigh();
    } else {
        const auto& quadratic = constants.law<ICalibrationConstantsFunctionalFTMS1356>();
        writer << quadratic.GetAlpha() << quadratic.GetBeta() << quadratic.GetFreqHigh();
    }
    const auto& law = constants.law<ICalibrationConstantsFunctionalFTMS>();
    writer << axis.GetFreqLow() << axis.GetFreqWidth() << constants.calibMode() << law.GetFTMSRawMode()
           << axis.GetSize() << int{law.GetQuadraticFlag()};
}

BlockDescription describe(const FTMSCalibrationBlock& block) {
    using enum CalibrationBlobDescription::Degree;
    return {false, ftmsModeOf(block.calibMode).law == FtmsLaw::Linear ? Linear : Quadratic};
}

constexpr BlobType g_types[] = {{FTMSCalibrationBlock::Type, BlobForm::Plain, readBlock<FTMSCalibrationBlock>,
                                 describeBlock<FTMSCalibrationBlock, describe>}};

constexpr const char* g_prefixes[] = {"V1.0CICRCalibrationConstants", "V2.0CICRCalibrationConstants",
                                      "V3.0CICRCalibrationConstants"};

}  // namespace

const BlobForms g_ftmsBlobs = {g_types, typeOfPlain<FTMSCalibrationBlock>, writeFtmsBlock};

const TextForms g_ftmsTexts = {
    CalibrationFamily::Ftms, g_prefixes, "DeserializeFromStringFTMS", true, readFtms, writeFtms};

}  // namespace kvan::calibration
