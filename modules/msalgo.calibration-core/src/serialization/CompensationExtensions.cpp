#include "serialization/CompensationExtensions.h"

#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "transformation/IHeldConstants.h"
#include "transformation/LawMaking.h"

#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/temperaturecompensation/TemperatureCompensationInfo.h>

#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

// What follows a blob of compensated TOF1 constants with more values than their block holds: an info with the mode,
// then one block of arrays, whose size must lead to the last byte. The reference form carries temperatures and factors,
// the form of a spectrum one array that is both.
//
// Order of the checks: info, mode, whether the law can be compensated, magic of the block, arrays, end. The failures of
// the two forms differ in words only.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
using Compensation = ICalibrationConstantsFunctionalTemperatureCompensation;
using Values = std::vector<double>;

/// Written into every info; readers do not look at it.
constexpr std::uint32_t g_identifier = 1;

/// The vectors first: setting the temperatures sets a mode of its own.
void setCompensation(ICalibrationTransformator& transformator, const Values& temperatures, const Values& factors,
                     ENUM_TEMPERATURE_COMPENSATION_MODE mode) {
    const auto functional = transformator.GetFunctionalConstants();
    auto& compensation = dynamic_cast<Compensation&>(*functional);
    compensation.SetMeasuredTemperatures(temperatures);
    compensation.SetCorrectionFactors(factors);
    compensation.SetCompensationMode(mode);
    transformator.SetFunctionalConstants(functional);
}

/// What the failures of both forms begin with.
constexpr const char* g_reader = "kvan::calibration::CalibrationTransformatorFactorySerialization::";

/// Goes to the end of the block that began at `start`. Nothing may follow it.
void endAtBlockEnd(CalibBlobReadAccess& access, std::size_t start, std::uint32_t wholeSize, const char* operation) {
    // The size counts from the block: it is a claim, so the end is sought, not assumed.
    if (!access.Seek(start + wholeSize))
        CalibratorUtil::ThrowReadFailure();
    if (!access.IsAtEnd())
        BOOST_THROW_EXCEPTION(
            std::runtime_error(std::string(g_reader) + operation +
                               ": Invalid serialization: data invalid. Was data written with newer software?"));
}

/// What both forms of an extension block tell.
struct Extension {
    std::uint32_t wholeSize;
    Values temperatures;
    Values factors;
};

/// The block of a spectrum: what was measured with it is both its temperatures and its factors.
Extension readExtensionBlock(CalibBlobReadAccess& access) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<TofTempCorrCalibrationExtensionBlock>(access);
    if (block.magic != TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC)
        BOOST_THROW_EXCEPTION(std::runtime_error(
            "VerifyExtensionInfoHeader(const CALIB_EXTENSION_BLOCK_INFO& header): Magic number is not "
            "TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC. Expected " +
            std::to_string(TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC) +
            " but m_Data.stHeader.usMagicNumber = " + std::to_string(block.magic)));
    Values factors = CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount);
    return {block.wholeSize, factors, std::move(factors)};
}

Extension readRefExtensionBlock(CalibBlobReadAccess& access) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<TofTempCorrCalibrationRefExtensionBlock>(access);
    if (block.magic != TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC)
        BOOST_THROW_EXCEPTION(std::runtime_error(
            "Read(FileAccessPolicy& FileAccess): Magic number is not TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC. "
            "Expected " +
            std::to_string(TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC) +
            " but m_Data.stHeader.usMagicNumber = " + std::to_string(block.magic)));
    Values temperatures = CalibratorUtil::ReadDoubles(access, start, block.temperaturesOffset, block.temperaturesCount);
    return {block.wholeSize, std::move(temperatures),
            CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount)};
}

/// What differs between the extensions of spectra and of references.
struct ExtensionForm {
    const char* operation;  // in the words of which it fails
    bool namesMagics;       // whether it tells the magic number that it found
    Extension (*read)(CalibBlobReadAccess& access);
};

constexpr ExtensionForm g_plain = {"DeserializeExtension", false, readExtensionBlock};
constexpr ExtensionForm g_reference = {"DeserializeRefExtension", true, readRefExtensionBlock};

void writeInfo(CalibBlobWriteAccess& access, const Compensation& compensation) {
    CALIB_EXTENSION_BLOCK_INFO info{};
    info.magic = CALIB_EXTENSION_BLOCK_INFO_MAGIC;
    info.identifier = g_identifier;
    info.argument = static_cast<std::uint32_t>(compensation.GetCompensationMode());
    CalibratorUtil::WriteRecord(access, info);
}

void writeExtension(const Compensation& compensation, CalibBlobWriteAccess& access) {
    const Values& factors = compensation.GetCorrectionFactors();
    writeInfo(access, compensation);
    TofTempCorrCalibrationExtensionBlock block{};
    block.magic = TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC;
    block.wholeSize = static_cast<std::uint32_t>(sizeof block + factors.size() * sizeof(double));
    block.factorsOffset = sizeof block;
    block.factorsCount = boost::numeric_cast<std::uint16_t>(factors.size());
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, factors);
}

void writeRefExtension(const Compensation& compensation, CalibBlobWriteAccess& access) {
    const Values& temperatures = compensation.GetMeasuredTemperatures();
    const Values& factors = compensation.GetCorrectionFactors();
    const std::size_t temperaturesEnd = sizeof(TofTempCorrCalibrationRefExtensionBlock) + temperatures.size() * 8;
    writeInfo(access, compensation);
    TofTempCorrCalibrationRefExtensionBlock block{};
    block.magic = TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC;
    block.wholeSize = static_cast<std::uint32_t>(temperaturesEnd + factors.size() * 8);
    block.temperaturesOffset = sizeof block;
    block.temperaturesCount = boost::numeric_cast<std::uint16_t>(temperatures.size());
    block.factorsOffset = static_cast<std::uint32_t>(temperaturesEnd);
    block.factorsCount = boost::numeric_cast<std::uint16_t>(factors.size());
    CalibratorUtil::WriteRecord(access, block);
    CalibratorUtil::WriteDoubles(access, temperatures);
    CalibratorUtil::WriteDoubles(access, factors);
}

}  // namespace

TransformatorPtr DeserializeExtension(const TransformatorPtr& transformator, BlobForm form,
                                      CalibBlobReadAccess& access) {
    const ExtensionForm& kind = form == BlobForm::Plain ? g_plain : g_reference;
    const auto info = CalibratorUtil::ReadRecord<CALIB_EXTENSION_BLOCK_INFO>(access);
    if (info.magic != CALIB_EXTENSION_BLOCK_INFO_MAGIC) {
        std::string failure = std::string(g_reader) + kind.operation + ": invalid serialization: id unknown";
        if (kind.namesMagics)
            failure += ": Should be CALIB_EXTENSION_BLOCK_INFO_MAGIC (" +
                       std::to_string(CALIB_EXTENSION_BLOCK_INFO_MAGIC) + ") but is " + std::to_string(info.magic) +
                       ".";
        BOOST_THROW_EXCEPTION(std::runtime_error(failure));
    }
    const auto mode = Compensation::compensationModeFromInt(static_cast<int>(info.argument));
    // The plain law, which it mostly is, takes them without a copy: nobody else has it yet.
    auto* const holder = dynamic_cast<Transformation::IHeldConstants*>(transformator.get());
    const auto* const law = holder != nullptr
                                ? Transformation::exactly<const Constants::CalibrationConstantsFunctionalTOF1>(
                                      holder->HeldFunctionalConstants())
                                : nullptr;
    const TransformatorPtr compensated =
        law != nullptr ? transformator : TemperatureCompensation::addTemperatureCompensationInfo(transformator, {}, {});
    const std::size_t start = access.Position();
    Extension extension = kind.read(access);
    endAtBlockEnd(access, start, extension.wholeSize, kind.operation);
    if (law != nullptr)
        holder->AdoptFunctionalConstants(
            std::make_shared<Constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation>(
                *law, std::move(extension.temperatures), std::move(extension.factors), mode));
    else
        setCompensation(*compensated, extension.temperatures, extension.factors, mode);
    return compensated;
}

void SerializeExtension(const ICalibrationTransformator& transformator, BlobForm form, CalibBlobWriteAccess& access) {
    if (familyOf(transformator) != CalibrationFamily::CompensatedTof)
        return;
    const auto functional = transformator.GetFunctionalConstants();
    const auto& compensation = dynamic_cast<const Compensation&>(*functional);
    const std::size_t temperatures = compensation.GetMeasuredTemperatures().size();
    const std::size_t factors = compensation.GetCorrectionFactors().size();
    // One value has its place in the block itself.
    if (form == BlobForm::Plain && factors > 1)
        writeExtension(compensation, access);
    if (form == BlobForm::Reference && (temperatures > 1 || factors > 1))
        writeRefExtension(compensation, access);
}

std::shared_ptr<Compensation> compensationOf(const ICalibrationTransformator& transformator) {
    return std::dynamic_pointer_cast<Compensation>(transformator.GetFunctionalConstants());
}

void requireReferenceData(const Compensation& compensation) {
    if (compensation.GetMeasuredTemperatures().empty())
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid reference calibrator: no temperatures"));
    if (compensation.GetCorrectionFactors().empty())
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid reference calibrator: no correction factors"));
}

bool holdsReferenceData(const Compensation& compensation) {
    // Neither is a plain reference; one without the other is a fault.
    if (compensation.GetMeasuredTemperatures().empty() && compensation.GetCorrectionFactors().empty())
        return false;
    requireReferenceData(compensation);
    return true;
}

}  // namespace kvan::calibration
