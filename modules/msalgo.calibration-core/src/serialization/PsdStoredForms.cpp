#include "serialization/CalibrationTextFields.h"
#include "serialization/CalibrationTextForm.h"
#include "serialization/StoredBlocks.h"
#include "serialization/WrappedAxis.h"

#include <calibration-core/interfaces/ICalibrationTransformatorPSD.h>

// Blob and text of post-source decay: the time-of-flight axis inside, the numbers of the polynomial, three arrays of
// which the last is carried along. The classic mode is refused. Another unknown mode has no polynomial in a blob, where
// masses stay as they are, and is refused in a text.
//
// A text is read in the manner of a stream, as that of KITE 1.
namespace kvan::calibration {

using namespace tqclegacy::CALIBRATION;

namespace {

using Polynomial = Constants::CalibrationPolynomialPSDFAST;

constexpr const char* g_prefixes[] = {"V1.0CPSDCalibrationConstants", "V2.0CPSDCalibrationConstants",
                                      "V3.0CPSDCalibrationConstants"};
enum Version : std::size_t { V1_0, V2_0, V3_0 };

void requireFastMode(int mode) {
    if (mode == CCOConversionUtil::ClassicPsdMode)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("CalibrationTransformatorFactorySerialization::DeserializeFromStringPSD: psd classic "
                               "mode is no longer supported."));
    if (mode != CCOConversionUtil::FastPsdMode)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("CalibrationTransformatorFactorySerialization::DeserializeFromStringPSD: Invalid "
                               "calibration serialization: Unknown psd type."));
}

void requireGood(const CalibrationTextStream& stream) {
    if (!stream.Good())
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::"
                               "DeserializeFromStringPSD: Invalid calibration string, ignoring. Was data written with "
                               "newer software?"));
}

void writePsdBlock(const ICalibrationTransformator& psd, BlobForm, CalibBlobWriteAccess& access) {
    const auto polynomial = polynomialOf<Polynomial, ICalibrationTransformatorPSD>(psd);
    const Polynomial::Numbers numbers = polynomial != nullptr ? polynomial->GetNumbers() : Polynomial::Numbers{};
    PSDCalibrationBlock block{};
    CCOConversionUtil::MapCCO2QSF(axisInside(psd), polynomial.get(), block);
    block.spcCount = storedCount(numbers.spc.size());
    block.ocpCount = storedCount(numbers.ocp.size());
    block.classicCount = storedCount(numbers.classic.size());
    // The arrays follow in the order of their offsets, without gaps.
    block.spcOffset = sizeof block;
    block.ocpOffset = block.spcOffset + block.spcCount * std::uint32_t{sizeof(double)};
    block.classicOffset = block.ocpOffset + block.ocpCount * std::uint32_t{sizeof(double)};
    CalibratorUtil::WriteRecord(access, block);
    for (const auto* values : {&numbers.spc, &numbers.ocp, &numbers.classic})
        CalibratorUtil::WriteDoubles(access, *values);
}

TransformatorPtr readPsdBlock(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<PSDCalibrationBlock>(access);
    const auto spc = CalibratorUtil::ReadDoubles(access, start, block.spcOffset, block.spcCount);
    const auto ocp = CalibratorUtil::ReadDoubles(access, start, block.ocpOffset, block.ocpCount);
    const auto classic = CalibratorUtil::ReadDoubles(access, start, block.classicOffset, block.classicCount);
    return CCOConversionUtil::MapQSF2CCO(block, spc, ocp, classic, factory);
}

TransformatorPtr readPsd(CalibrationTextFields& fields, std::size_t version, const Factory& factory) {
    const auto tof = CalibrationTextForm::ReadConstants(CalibrationFamily::Tof, fields.Reader(), factory);
    CalibrationTextStream stream(fields);
    Polynomial::Numbers numbers;
    const int mode = stream.Int();
    // A mode that could not be read is a damaged text, not an unknown mode.
    requireGood(stream);
    requireFastMode(mode);
    numbers.uRefFull = stream.Double();
    numbers.uSegment = stream.Double();
    numbers.calibrationMass = stream.Double();
    numbers.parentMass = stream.Double();
    numbers.minArg = stream.Double();
    numbers.maxArg = stream.Double();
    numbers.spc = stream.Vector();
    numbers.ocp = stream.Vector();
    numbers.classic = stream.Vector();
    stream.DropVectors(1);  // the coefficients that are derived
    if (version == V2_0) {
        stream.DropTailOfSecondVersion();
    } else if (version == V1_0) {
        stream.DropTailOfFirstVersion();
    } else {
        stream.Bool();
        stream.DropInts(1);
    }
    requireGood(stream);
    return factory.createTransformatorPsd(tof, std::make_shared<Polynomial>(std::move(numbers)));
}

void writePsd(const ICalibrationTransformator& psd, CalibrationTextWriter& writer) {
    const auto polynomial = polynomialOf<Polynomial, ICalibrationTransformatorPSD>(psd);
    if (polynomial == nullptr)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("CalibrationTransformatorPSD::SerializeDataToString: fastPolynomial is not of type "
                                  "ICalibrationSerializationConstantsPtr"));
    CalibrationTextForm::SerializePraefixAndConstants(CalibrationFamily::Tof, axisInside(psd), writer);
    const Polynomial::Numbers& numbers = polynomial->GetNumbers();
    writer << CCOConversionUtil::FastPsdMode << numbers.uRefFull << numbers.uSegment << numbers.calibrationMass
           << numbers.parentMass << numbers.minArg << numbers.maxArg;
    writer << numbers.spc << numbers.ocp << numbers.classic << polynomial->GetCoefficients() << 0 << 0;
}

constexpr BlobType g_types[] = {
    {PSDCalibrationBlock::Type, BlobForm::Plain, readPsdBlock, describeBlock<PSDCalibrationBlock>}};

}  // namespace

/// The block of the transformator inside, the numbers of the polynomial, its two sets of coefficients and a third one,
/// which is carried. Without a polynomial the mode is 0.
const BlobForms g_psdBlobs = {g_types, typeOfPlain<PSDCalibrationBlock>, writePsdBlock};

/// There is no text without a polynomial.
const TextForms g_psdTexts = {CalibrationFamily::Psd, g_prefixes, "DeserializeFromStringPSD", false, readPsd, writePsd};

}  // namespace kvan::calibration
