#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "serialization/CalibrationTextFields.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrittenConstants.h"

#include <calibration-core/constants/CalibrationConstantsPaladin.h>

// Blob and text of an ion trap. The text holds the constants of the law before those of the axis, the block likewise.
// The law is mass = c0 + c1 * raw + c2 * raw^2; its axis counts measurements per raw mass from the begin of the scale.
//
// The blob has the plain form only: no temperature enters the law, so there is nothing that a reference would add. The
// three versions of the text differ in their prefix and are read alike.
namespace kvan::calibration {

using namespace Constants;
using namespace tqclegacy::CALIBRATION;

namespace {

using Fields = CalibrationTextFields;

// The numbers of a line are read one by one: arguments of a call have no order.

TransformatorPtr readPaladin(Fields& fields, std::size_t, const Factory& factory) {
    // c0, c1, c2 and the mode of the law, then the scale.
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const int calibMode = fields.Int();
    const double measurementsPerRawMass = fields.Double();
    const double beginRawMass = fields.Double();
    return factory.createTransformatorTrap(
        std::make_shared<CalibrationConstantsFunctionalPaladin>(c0, c1, c2, calibMode),
        std::make_shared<CalibrationConstantsPhysicalPaladin>(beginRawMass, measurementsPerRawMass));
}

void writePaladin(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& law = constants.law<ICalibrationConstantsFunctionalPaladin>();
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalPaladin>();
    writer << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2() << constants.calibMode()
           << axis.GetMeasurementsPerRawMass() << axis.GetBeginRawMass();
}

BlockDescription describe(const IonTrapCalibrationBlock& block) {
    return {false, degreeOf(block.c2)};
}

constexpr BlobType g_types[] = {{IonTrapCalibrationBlock::Type, BlobForm::Plain, readBlock<IonTrapCalibrationBlock>,
                                 describeBlock<IonTrapCalibrationBlock, describe>}};

constexpr const char* g_prefixes[] = {"V1.0CPaladinCalibrationConstants", "V2.0CPaladinCalibrationConstants",
                                      "V3.0CPaladinCalibrationConstants"};

}  // namespace

const BlobForms g_paladinBlobs = {g_types, typeOfPlain<IonTrapCalibrationBlock>, writePlain<IonTrapCalibrationBlock>};

const TextForms g_paladinTexts = {
    CalibrationFamily::Paladin, g_prefixes, "DeserializeFromStringPaladin", true, readPaladin, writePaladin};

}  // namespace kvan::calibration
