#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/CalibrationTextForm.h"
#include "serialization/CompensationExtensions.h"
#include "serialization/GpxStoredForms.h"
#include "serialization/KiteStoredForms.h"
#include "serialization/PsdStoredForms.h"
#include "serialization/StoredBlocks.h"
#include "transformation/conversion/CCOConversionUtil.h"
#include "utilities/IndexTruncation.h"

#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <calibration-core/interfaces/ICalibrationTransformatorDecorator.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <logger/logger.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace kvan::calibration::Transformation {

using namespace tqclegacy::CALIBRATION;

namespace {

using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
using Factory = ICalibrationTransformatorFactory;

/// In the head of a blob without a transformator.
constexpr std::uint16_t g_noTransformator = 255;

[[noreturn]] void throwInvalidText() {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::"
                           "DeserializeFromString: Error in serialization string."));
}

template <class Block>
TransformatorPtr readBlock(CalibBlobReadAccess& access, const Factory& factory) {
    return CCOConversionUtil::MapQSF2CCO(CalibratorUtil::ReadRecord<Block>(access), factory);
}

TransformatorPtr readTof2Compensated(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<Tof2TempCorrCalibrationBlock>(access);
    const auto factors = CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount);
    return CCOConversionUtil::MapQSF2CCO(block, factors, factory);
}

TransformatorPtr readTof2CompensatedReference(CalibBlobReadAccess& access, const Factory& factory) {
    const std::size_t start = access.Position();
    const auto block = CalibratorUtil::ReadRecord<Tof2TempCorrCalibrationRefBlock>(access);
    const auto temperatures =
        CalibratorUtil::ReadDoubles(access, start, block.temperaturesOffset, block.temperaturesCount);
    const auto factors = CalibratorUtil::ReadDoubles(access, start, block.factorsOffset, block.factorsCount);
    return CCOConversionUtil::MapQSF2CCO(block, temperatures, factors, factory);
}

struct BlobType {
    std::uint16_t type;
    TransformatorPtr (*read)(CalibBlobReadAccess& access, const Factory& factory);
    TransformatorPtr (*extend)(const TransformatorPtr& transformator, CalibBlobReadAccess& access);
};

constexpr BlobType g_blobTypes[] = {
    {TOFCalibrationBlock::Type, readBlock<TOFCalibrationBlock>, DeserializeExtension},
    {TOFCORRCalibrationRefBlock::Type, readBlock<TOFCORRCalibrationRefBlock>, DeserializeRefExtension},
    {TOFCORRCalibrationBlock::Type, readBlock<TOFCORRCalibrationBlock>, DeserializeExtension},
    {TOFCalibrationRefBlock::Type, readBlock<TOFCalibrationRefBlock>, DeserializeRefExtension},
    {PSDCalibrationBlock::Type, PsdStoredForm::Read, DeserializeExtension},
    {KITE1CalibrationBlock::Type, Kite1StoredForm::Read, DeserializeExtension},
    {KITE2CalibrationBlock::Type, Kite2StoredForm::Read, DeserializeExtension},
    {TOF2CalibrationBlock::Type, readBlock<TOF2CalibrationBlock>, DeserializeExtension},
    {Tof2TempCorrCalibrationBlock::Type, readTof2Compensated, DeserializeExtension},
    {TOF2CalibrationRefBlock::Type, readBlock<TOF2CalibrationRefBlock>, DeserializeRefExtension},
    {Tof2TempCorrCalibrationRefBlock::Type, readTof2CompensatedReference, DeserializeRefExtension},
    {FTMSCalibrationBlock::Type, readBlock<FTMSCalibrationBlock>, DeserializeExtension},
    {IonTrapCalibrationBlock::Type, readBlock<IonTrapCalibrationBlock>, DeserializeExtension},
    {LINEARCalibrationBlock::Type, readBlock<LINEARCalibrationBlock>, DeserializeExtension},
};

void writeBlob(const ICalibrationTransformator& transformator, BlobForm form, std::vector<unsigned char>& blob) {
    const ICalibSerialization& facet = storedFormOf(transformator);
    CalibBlobWriteAccess access(blob);
    const std::uint16_t hasGpx = facet.HasGpxData() ? 1 : 0;
    CalibratorUtil::WriteRecord(access, CalibBlobHead{facet.GetBlobType(form), hasGpx});
    facet.SerializeToBlob(form, access);
    SerializeExtension(transformator, form, access);
}

void writeNoTransformator(std::vector<unsigned char>& blob) {
    CalibBlobWriteAccess access(blob);
    CalibratorUtil::WriteRecord(access, CalibBlobHead{g_noTransformator, 0});
}

/// The tokens ahead of the constants.
struct TextHead {
    int version = 3;
    int strategy = 0;
    int indexOffset = 0;
    bool hasRange = false;
    int rangeLow = std::numeric_limits<std::int32_t>::min();
    int rangeHigh = std::numeric_limits<std::int32_t>::max();
};

int GetStringVersionNumberOfStringPrefix(std::string_view token) {
    constexpr std::string_view versions[] = {"V1.0CCalibrator", "V2.0CCalibrator", "V3.0CCalibrator"};
    const auto* const found = std::find(std::begin(versions), std::end(versions), token);
    if (found == std::end(versions))
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::"
                               "GetStringVersionNumberOfStringPrefix: Version id not supported."));
    return static_cast<int>(found - std::begin(versions)) + 1;
}

/// What a text holds apart from one another: bounds on the index outside, a correction of masses, the law inside.
struct WrittenParts {
    TextHead head;
    std::shared_ptr<ICalibrationPolynomialGPX> correction;
    TransformatorPtr law;
};

WrittenParts partsOf(const TransformatorPtr& transformator) {
    WrittenParts parts{{}, nullptr, transformator};
    parts.head.indexOffset = Utilities::truncateToIndex(transformator->GetIndexOffset() + 0.5);
    if (const auto* const bounds =
            dynamic_cast<const ICalibrationTransformatorIndexBoundsChecker*>(transformator.get())) {
        parts.head.hasRange = true;
        parts.head.rangeLow = Utilities::truncateToIndex(bounds->GetLowerIndexBound());
        parts.head.rangeHigh = Utilities::truncateToIndex(bounds->GetUpperIndexBound());
        parts.law = bounds->GetDecoratedTransformator();
    }
    while (const auto* const corrected = dynamic_cast<const ICalibrationTransformatorGPX*>(parts.law.get())) {
        if (auto polynomial = corrected->GetPolynomial()) {
            GpxStoredForms::RequireOne(parts.correction == nullptr);
            parts.correction = std::move(polynomial);
        }
        parts.law = corrected->GetTransformator();
    }
    if (!parts.correction)
        parts.correction = std::make_shared<Constants::CalibrationPolynomialGPX>();
    return parts;
}

TextHead readTextHead(CalibrationTextReader& reader) {
    const auto integer = [&reader] {
        const auto value = reader.Int();
        if (!value)
            throwInvalidText();
        return *value;
    };
    TextHead head{GetStringVersionNumberOfStringPrefix(reader.Token()), integer()};
    const int kind = integer();
    if (kind != 1 && kind != 100 && kind != 109)
        throwInvalidText();
    if (head.version >= 2) {
        head.indexOffset = integer();
        head.hasRange = integer() == 1;
        head.rangeLow = integer();
        head.rangeHigh = integer();
    }
    return head;
}

}  // namespace

CalibrationTransformatorFactorySerialization::CalibrationTransformatorFactorySerialization()
    : CalibrationTransformatorFactorySerialization(CalibrationTransformatorFactory::instance()) {}

CalibrationTransformatorFactorySerialization::CalibrationTransformatorFactorySerialization(
    std::shared_ptr<const ICalibrationTransformatorFactory> factory)
    : m_factory(std::move(factory)) {}

TransformatorPtr CalibrationTransformatorFactorySerialization::DeserializeFromBlob(
    const std::vector<unsigned char>& blob) const {
    if (blob.empty())
        return nullptr;
    CalibBlobReadAccess access(blob);
    const auto head = CalibratorUtil::ReadRecord<CalibBlobHead>(access);
    const auto* const row = std::find_if(std::begin(g_blobTypes), std::end(g_blobTypes),
                                         [&](const BlobType& candidate) { return candidate.type == head.type; });
    if (row == std::end(g_blobTypes))
        return nullptr;
    auto transformator = row->read(access, *m_factory);
    access.SeekToFarthest();  // arrays may stand in any order, and overlap
    if (head.hasGpx > 1)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromBlob: "
                               "Invalid serialization: transformator type unknown."));
    if (head.hasGpx == 1) {
        transformator = m_factory->createTransformatorGPX(transformator, GpxStoredForms::ReadBlob(access));
        access.SeekToFarthest();
    }
    return access.IsAtEnd() ? transformator : row->extend(transformator, access);
}

void CalibrationTransformatorFactorySerialization::SerializeToBlob(const TransformatorPtr& transformator,
                                                                   std::vector<unsigned char>& blob) const {
    blob.clear();
    if (!transformator)
        return writeNoTransformator(blob);
    if (transformator->GetMeasurementModeInfo())
        BOOST_THROW_EXCEPTION(
            std::logic_error("invalid serialization: a reference transformator is serialized as a normal one"));
    writeBlob(*transformator, BlobForm::Plain, blob);
}

void CalibrationTransformatorFactorySerialization::SerializeReferenceToBlob(const TransformatorPtr& transformator,
                                                                            std::vector<unsigned char>& blob) const {
    blob.clear();
    if (!transformator)
        return writeNoTransformator(blob);
    if (!transformator->GetMeasurementModeInfo())
        BOOST_THROW_EXCEPTION(
            std::logic_error("invalid serialization: a normal transformator is serialized as a reference one"));
    writeBlob(*transformator, BlobForm::Reference, blob);
}

TransformatorPtr CalibrationTransformatorFactorySerialization::DeserializeFromString(const std::string& text) const {
    CalibrationTextReader reader(text);
    const TextHead head = readTextHead(reader);
    auto transformator = CalibrationTextForm::ReadConstants(head.strategy, reader, *m_factory);
    if (head.version == 3) {
        const auto polynomial = GpxStoredForms::ReadText(reader);
        if (polynomial->GetUse())
            transformator = m_factory->createTransformatorGPX(transformator, polynomial);
    }
    transformator->SetIndexOffset(head.indexOffset);
    if (!head.hasRange)
        return transformator;
    return m_factory->createDecoratedTransformator(Factory::Decorator::IndexBounds, transformator, head.rangeLow,
                                                   head.rangeHigh);
}

std::string CalibrationTransformatorFactorySerialization::SerializeToString(
    const TransformatorPtr& transformator) const {
    if (!transformator)
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationTransformatorFactorySerialization::SerializeToString: no transformator."));
    const WrittenParts parts = partsOf(transformator);
    storedFormOf(*parts.law);
    const int strategy = CalibrationTextForm::StrategyOf(*parts.law);
    if (strategy != parts.law->GetFunctionalTypeCode()) {
        const auto logger =
            logging::Logger::getLogger("kvan.calibration_core.CalibrationTransformatorFactorySerialization");
        KVAN_LOG(logger, WARN) << "The temperature compensation of a TOF1 calibration is lost in its text form.";
    }
    std::string text;
    CalibrationTextWriter writer(text);
    writer << "V3.0CCalibrator" << strategy << 1 << parts.head.indexOffset << int{parts.head.hasRange}
           << parts.head.rangeLow << parts.head.rangeHigh;
    CalibrationTextForm::SerializePraefixAndConstants(strategy, *parts.law, writer);
    GpxStoredForms::AppendText(*parts.correction, text);
    return text;
}

}  // namespace kvan::calibration::Transformation
