#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "serialization/CalibrationTextFields.h"
#include "serialization/CompensationExtensions.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrittenConstants.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>

#include <boost/numeric/conversion/cast.hpp>

// Blobs and texts of the second generation of time of flight. Compensated constants have blocks of their own, which
// hold any number of values, so that no extension follows; a reference block without values is that of the plain law.
// In a text they are a family of their own around the line of the plain one.
namespace kvan::calibration {

using namespace Constants;
using namespace tqclegacy::CALIBRATION;

namespace {

using Fields = CalibrationTextFields;
using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;

TransformatorPtr readTof2Compensated(CalibBlobReadAccess& access, const Factory& factory) {
    // Offsets of arrays count from the block, which begins after the head of the blob.
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<Tof2TempCorrCalibrationBlock>(access);
    auto factors = CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount);
    return CCOConversionUtil::MapQSF2CCO(block, std::move(factors), factory);
}

TransformatorPtr readTof2CompensatedReference(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<Tof2TempCorrCalibrationRefBlock>(access);
    auto temperatures = CalibratorUtil::ReadDoubles(access, start, block.temperaturesOffset, block.temperaturesCount);
    auto factors = CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount);
    return CCOConversionUtil::MapQSF2CCO(block, std::move(temperatures), std::move(factors), factory);
}

void writeCompensatedTof2(const ICalibrationTransformator& transformator, const Compensation& compensation,
                          CalibBlobWriteAccess& access) {
    const auto& factors = compensation.GetCorrectionFactors();
    Tof2TempCorrCalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(transformator, block);
    block.factorsCount = boost::numeric_cast<std::uint32_t>(factors.size());
    // A count of 0 makes the offset meaningless; 0 is written.
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
    // Counts have 16 bits here and 32 in the plain block; more values than that throw.
    block.temperaturesCount = boost::numeric_cast<std::uint16_t>(temperatures.size());
    // Temperatures first, the factors after them.
    block.temperaturesOffset = sizeof block;
    block.factorsCount = boost::numeric_cast<std::uint16_t>(factors.size());
    block.factorsOffset = static_cast<std::uint32_t>(sizeof block + temperatures.size() * sizeof(double));
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, temperatures);
    CalibratorUtil::WriteDoubles(access, factors);
}

std::uint16_t tof2TypeOf(const ICalibrationTransformator& transformator, BlobForm form) {
    const bool compensated = compensationOf(transformator) != nullptr;
    if (form == BlobForm::Plain)
        return compensated ? Tof2TempCorrCalibrationBlock::Type : TOF2CalibrationBlock::Type;
    return compensated ? Tof2TempCorrCalibrationRefBlock::Type : TOF2CalibrationRefBlock::Type;
}

void writeTof2Block(const ICalibrationTransformator& transformator, BlobForm form, CalibBlobWriteAccess& access) {
    const auto compensation = compensationOf(transformator);
    if (!compensation)
        return form == BlobForm::Plain ? writeBlock<TOF2CalibrationBlock>(transformator, access)
                                       : writeBlock<TOF2CalibrationRefBlock>(transformator, access);
    if (form == BlobForm::Plain)
        return writeCompensatedTof2(transformator, *compensation, access);
    // A reference without data would be read back as the plain law.
    requireReferenceData(*compensation);
    writeCompensatedTof2Reference(transformator, *compensation, access);
}

constexpr const char* g_prefixes[] = {"V1.0CTOF2CalibrationConstants"};
constexpr const char* g_compensatedPrefixes[] = {"V1.0CTOF2TemperatureCompensatedCalibrationConstants"};

// The numbers of a line are read one by one: arguments of a call have no order.

/// A line of the plain law, which stands alone or inside one of the compensated law.
struct Tof2Numbers {
    std::shared_ptr<CalibrationConstantsPhysicalTOF> axis;
    CalibrationConstantsFunctionalTOF2 law;
};

Tof2Numbers readTof2Numbers(Fields& fields) {
    const double timeDelay = fields.Double();
    const double timeBase = fields.Double();
    const double c0 = fields.Double();
    const double c1 = fields.Double();
    const double c2 = fields.Double();
    const double c3 = fields.Double();
    const double c4 = fields.Double();
    const int calibMode = fields.Int();
    return {std::make_shared<CalibrationConstantsPhysicalTOF>(timeDelay, timeBase), {c0, c1, c2, c3, c4, calibMode}};
}

TransformatorPtr readTof2(Fields& fields, std::size_t, const Factory& factory) {
    const Tof2Numbers numbers = readTof2Numbers(fields);
    return factory.createTransformatorTof2(std::make_shared<CalibrationConstantsFunctionalTOF2>(numbers.law),
                                           numbers.axis);
}

void writeTof2(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& axis = constants.axis<ICalibrationConstantsPhysicalTOF>();
    const auto& law = constants.law<CalibrationConstantsFunctionalTOF2>();
    writer << axis.GetTimeDelay() << axis.GetTimeBase() << law.GetStoredC0() << law.GetStoredC1() << law.GetStoredC2()
           << law.GetStoredC3() << law.GetShift() << law.GetCalibMode();
}

TransformatorPtr readTof2Compensated(Fields& fields, std::size_t, const Factory& factory) {
    // The line of the plain law stands inside, with its own prefix.
    fields.Prefix(g_prefixes);
    const Tof2Numbers numbers = readTof2Numbers(fields);
    const auto mode = Compensation::compensationModeFromInt(fields.Int());
    const auto law = std::make_shared<CalibrationConstantsFunctionalTOF2TemperatureCompensation>(numbers.law);
    law->SetMeasuredTemperatures(fields.Vector());
    law->SetCorrectionFactors(fields.Vector());
    law->SetCompensationMode(mode);  // last: setting the temperatures sets a mode of its own
    return factory.createTransformatorTof2(law, numbers.axis);
}

void writeTof2Compensated(const ICalibrationTransformator& transformator, CalibrationTextWriter& writer) {
    const WrittenConstants constants(transformator);
    const auto& compensation = constants.law<Compensation>();
    writer << g_prefixes[0];
    writeTof2(transformator, writer);
    writer << compensation.GetCompensationMode() << compensation.GetMeasuredTemperatures()
           << compensation.GetCorrectionFactors();
}

BlockDescription describe(const TOF2CalibrationBlock& block) {
    return {false, block.c3 != 0.0 ? CalibrationBlobDescription::Degree::Cubic : degreeOf(block.c2)};
}
BlockDescription describe(const TOF2CalibrationRefBlock& block) {
    return describe(block.block);
}
BlockDescription describe(const Tof2TempCorrCalibrationBlock& block) {
    return {true, describe(block.tof2).degree};
}
BlockDescription describe(const Tof2TempCorrCalibrationRefBlock& block) {
    return {true, describe(block.tof2).degree};
}

template <class Block>
constexpr BlobType blobType(BlobForm form, decltype(BlobType::read) read) {
    return {Block::Type, form, read, describeBlock<Block, describe>};
}

constexpr BlobType g_types[] = {
    blobType<TOF2CalibrationBlock>(BlobForm::Plain, readBlock<TOF2CalibrationBlock>),
    blobType<Tof2TempCorrCalibrationBlock>(BlobForm::Plain, readTof2Compensated),
    blobType<TOF2CalibrationRefBlock>(BlobForm::Reference, readBlock<TOF2CalibrationRefBlock>),
    blobType<Tof2TempCorrCalibrationRefBlock>(BlobForm::Reference, readTof2CompensatedReference),
};

}  // namespace

/// Compensated constants have blocks of their own for any number of values.
const BlobForms g_tof2Blobs = {g_types, tof2TypeOf, writeTof2Block};

const TextForms g_tof2Texts = {
    CalibrationFamily::Tof2, g_prefixes, "DeserializeFromStringTOF2", true, readTof2, writeTof2};

const TextForms g_compensatedTof2Texts = {CalibrationFamily::CompensatedTof2,
                                          g_compensatedPrefixes,
                                          "DeserializeFromStringTOF2TemperatureCompensated",
                                          true,
                                          readTof2Compensated,
                                          writeTof2Compensated};

}  // namespace kvan::calibration
