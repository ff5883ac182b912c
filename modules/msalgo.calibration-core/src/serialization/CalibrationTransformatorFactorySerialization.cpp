#include "families/CalibrationFamilies.h"
#include "families/ICalibSerialization.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/CalibrationTextForm.h"
#include "serialization/CompensationExtensions.h"
#include "serialization/GpxStoredForms.h"
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

// Both stored forms of a transformator from the outside in. A blob is a head, the block of a family, at most one
// correction of masses, at most one extension; a text is the same in tokens, with an index offset and index bounds
// before, for which blobs have no place.
//
// Reading knows families by the type or the strategy that it finds, writing by what the transformator says of itself. A
// type that no family has gives null, as "no transformator" does; anything that is cut, too long or contradictory
// throws, and nothing is left behind. Corrections are taken off before a family is asked, since they forward whatever
// the transformator inside tells of itself.
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

/// A transformator without the corrections of masses around it.
struct CorrectedLaw {
    TransformatorPtr law;
    std::vector<std::shared_ptr<ICalibrationPolynomialGPX>> corrections;  // outermost first
};

CorrectedLaw withoutCorrections(TransformatorPtr transformator) {
    CorrectedLaw parts{std::move(transformator), {}};
    while (const auto* const corrected = dynamic_cast<const ICalibrationTransformatorGPX*>(parts.law.get())) {
        if (auto polynomial = corrected->GetPolynomial())
            parts.corrections.push_back(std::move(polynomial));
        parts.law = corrected->GetTransformator();
    }
    return parts;
}

/// Stored forms have place for one correction.
void requireOneCorrection(const CorrectedLaw& parts) {
    if (parts.corrections.size() > 1)
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: a correction inside a correction"));
}

/// The family whose stored forms hold the transformator. Throws `std::invalid_argument` if it has none.
CalibrationFamily storedFamilyOf(const ICalibrationTransformator& transformator) {
    const auto* const facet = dynamic_cast<const ICalibSerialization*>(&transformator);
    if (facet == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument("Transformer does not offer serialization interface."));
    return facet->GetStoredFamily();
}

void writeBlob(const TransformatorPtr& transformator, BlobForm form, std::vector<unsigned char>& blob) {
    const CorrectedLaw parts = withoutCorrections(transformator);
    const BlobForms& blobs = *findRow(storedFamilyOf(*parts.law))->blobs;
    // The type is asked before anything is written: a family may refuse the form.
    CalibBlobWriteAccess access(blob);
    const std::uint16_t hasGpx = parts.corrections.empty() ? 0 : 1;
    CalibratorUtil::WriteRecord(access, CalibBlobHead{blobs.typeOf(*parts.law, form), hasGpx});
    requireOneCorrection(parts);
    blobs.write(*parts.law, form, access);
    for (const auto& correction : parts.corrections)
        GpxStoredForms::WriteBlob(*correction, access);
    SerializeExtension(*transformator, form, access);
}

void writeNoTransformator(std::vector<unsigned char>& blob) {
    CalibBlobWriteAccess access(blob);
    CalibratorUtil::WriteRecord(access, CalibBlobHead{g_noTransformator, 0});
}

/// The tokens before the constants.
struct TextHead {
    int version = 3;
    CalibrationFamily strategy = CalibrationFamily::Tof;
    int indexOffset = 0;
    bool hasRange = false;
    int rangeLow = std::numeric_limits<std::int32_t>::min();
    int rangeHigh = std::numeric_limits<std::int32_t>::max();
};

/// The version of a text, 1 to 3; each adds to the one before: 2 the offset and the range, 3 the correction.
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
    // Rounded as every index of a text: 0.5 is added and the rest cut toward zero.
    parts.head.indexOffset = Utilities::truncateToIndex(transformator->GetIndexOffset() + 0.5);
    if (const auto* const bounds =
            dynamic_cast<const ICalibrationTransformatorIndexBoundsChecker*>(transformator.get())) {
        parts.head.hasRange = true;
        parts.head.rangeLow = Utilities::truncateToIndex(bounds->GetLowerIndexBound());
        parts.head.rangeHigh = Utilities::truncateToIndex(bounds->GetUpperIndexBound());
        parts.law = bounds->GetDecoratedTransformator();
    }
    CorrectedLaw inside = withoutCorrections(parts.law);
    requireOneCorrection(inside);
    parts.law = inside.law;
    if (!inside.corrections.empty())
        parts.correction = inside.corrections.front();
    // A text always holds the words of a correction.
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
    TextHead head{GetStringVersionNumberOfStringPrefix(reader.Token()), CalibrationFamily{integer()}};
    const int kind = integer();
    // Three codes are known, which mean the same to a reader; 1 is written.
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
    const BlobType* const type = findBlobType(head.type).type;
    // 255, which stands for no transformator, is such a type as well.
    if (type == nullptr)
        return nullptr;
    auto transformator = type->read(access, *m_factory);
    access.SeekToFarthest();  // arrays may stand in any order, and overlap
    // Looked at after the block: a cut block fails first.
    if (head.hasGpx > 1)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromBlob: "
                               "Invalid serialization: transformator type unknown."));
    if (head.hasGpx == 1) {
        transformator = m_factory->createTransformatorGPX(transformator, GpxStoredForms::ReadBlob(access));
        access.SeekToFarthest();
    }
    return access.IsAtEnd() ? transformator : DeserializeExtension(transformator, type->form, access);
}

void CalibrationTransformatorFactorySerialization::SerializeToBlob(const TransformatorPtr& transformator,
                                                                   std::vector<unsigned char>& blob) const {
    blob.clear();
    if (!transformator)
        return writeNoTransformator(blob);
    if (transformator->GetMeasurementModeInfo())
        BOOST_THROW_EXCEPTION(
            std::logic_error("invalid serialization: a reference transformator is serialized as a normal one"));
    writeBlob(transformator, BlobForm::Plain, blob);
}

void CalibrationTransformatorFactorySerialization::SerializeReferenceToBlob(const TransformatorPtr& transformator,
                                                                            std::vector<unsigned char>& blob) const {
    blob.clear();
    if (!transformator)
        return writeNoTransformator(blob);
    if (!transformator->GetMeasurementModeInfo())
        BOOST_THROW_EXCEPTION(
            std::logic_error("invalid serialization: a normal transformator is serialized as a reference one"));
    writeBlob(transformator, BlobForm::Reference, blob);
}

TransformatorPtr CalibrationTransformatorFactorySerialization::DeserializeFromString(const std::string& text) const {
    CalibrationTextReader reader(text);
    const TextHead head = readTextHead(reader);
    auto transformator = CalibrationTextForm::ReadConstants(head.strategy, reader, *m_factory);
    // From the inside out: the correction, the offset of the whole, the bounds around all of it.
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
    storedFamilyOf(*parts.law);
    const CalibrationFamily strategy = CalibrationTextForm::StrategyOf(*parts.law);
    // The strategy of a text is that of the plain law only where a text loses something.
    if (strategy != familyOf(*parts.law)) {
        const auto logger =
            logging::Logger::getLogger("kvan.calibration_core.CalibrationTransformatorFactorySerialization");
        KVAN_LOG(logger, WARN) << "The temperature compensation of a TOF1 calibration is lost in its text form.";
    }
    std::string text;
    CalibrationTextWriter writer(text);
    writer << "V3.0CCalibrator" << codeOf(strategy) << 1 << parts.head.indexOffset << int{parts.head.hasRange}
           << parts.head.rangeLow << parts.head.rangeHigh;
    CalibrationTextForm::SerializePraefixAndConstants(strategy, *parts.law, writer);
    GpxStoredForms::AppendText(*parts.correction, text);
    return text;
}

}  // namespace kvan::calibration::Transformation
