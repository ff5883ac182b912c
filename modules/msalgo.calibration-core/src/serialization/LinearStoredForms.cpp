#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "serialization/CalibrationTextFields.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrittenConstants.h"

#include <calibration-core/constants/CalibrationConstantsLinear.h>

// Blob and text of a straight line. A blob has no place for the physical constants: it is a line over the index. A text
// has them before those of the law.
namespace kvan::calibration {

using namespace Constants;
using namespace tqclegacy::CALIBRATION;

namespace {

using Fields = CalibrationTextFields;

// The numbers of a line are read one by one: arguments of a call have no order.

TransformatorPtr readLinear(Fields& fields, std::size_t, const Factory& factory) {
    // The line between index and raw value, then the one between raw value and mass.
    const double a0 = fields.Double();
    const double a1 = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const int calibMode = fields.Int();
    return factory.createTransformatorLinear(std::make_shared<CalibrationConstantsFunctionalLinear>(c0, c1, calibMode),
                                             std::make_shared<CalibrationConstantsPhysicalLinear>(a0, a1));
}

void writeLinear(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalLinear>();
    const auto& law = constants.law<ICalibrationConstantsFunctionalLinear>();
    writer << axis.GetA0() << axis.GetA1() << law.GetStoredC0() << law.GetStoredC1() << constants.calibMode();
}

constexpr BlobType g_types[] = {{LINEARCalibrationBlock::Type, BlobForm::Plain, readBlock<LINEARCalibrationBlock>,
                                 describeBlock<LINEARCalibrationBlock>}};

constexpr const char* g_prefixes[] = {"V1.0CLinearCalibrationConstants", "V2.0CLinearCalibrationConstants",
                                      "V3.0CLinearCalibrationConstants"};

}  // namespace

const BlobForms g_linearBlobs = {g_types, typeOfPlain<LINEARCalibrationBlock>, writePlain<LINEARCalibrationBlock>};

const TextForms g_linearTexts = {
    CalibrationFamily::Linear, g_prefixes, "DeserializeFromStringLinear", true, readLinear, writeLinear};

}  // namespace kvan::calibration
