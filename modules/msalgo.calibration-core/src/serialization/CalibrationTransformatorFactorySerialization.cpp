#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"

#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/ICalibSerialization.h"
#include "transformation/conversion/CCOConversionUtil.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <iterator>
#include <stdexcept>

namespace kvan::calibration::Transformation {

using namespace tqclegacy::CALIBRATION;

namespace {

using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
using Factory = ICalibrationTransformatorFactory;

/// In the head of a blob without a transformator.
constexpr std::uint16_t g_noTransformator = 255;

[[noreturn]] void throwNotSupported() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Calibration family not supported yet."));
}

template <class Block>
TransformatorPtr readBlock(CalibBlobReadAccess& access, const Factory& factory) {
    return CCOConversionUtil::MapQSF2CCO(CalibratorUtil::ReadRecord<Block>(access), factory);
}

TransformatorPtr readUnsupported(CalibBlobReadAccess&, const Factory&) {
    throwNotSupported();
}

struct BlobType {
    std::uint16_t type;
    TransformatorPtr (*read)(CalibBlobReadAccess& access, const Factory& factory);
};

constexpr BlobType g_blobTypes[] = {
    {TOFCalibrationBlock::Type, readBlock<TOFCalibrationBlock>},
    {2, readUnsupported},  // TOFCORRCalibrationRefBlock
    {3, readUnsupported},  // TOFCORRCalibrationBlock
    {TOFCalibrationRefBlock::Type, readBlock<TOFCalibrationRefBlock>},
    {6, readUnsupported},    // PSDCalibrationBlock
    {7, readUnsupported},    // KITE 1
    {8, readUnsupported},    // KITE 2
    {9, readUnsupported},    // TOF2CalibrationBlock
    {10, readUnsupported},   // Tof2TempCorrCalibrationBlock
    {11, readUnsupported},   // TOF2CalibrationRefBlock
    {12, readUnsupported},   // Tof2TempCorrCalibrationRefBlock
    {257, readUnsupported},  // FTMSCalibrationBlock
    {IonTrapCalibrationBlock::Type, readBlock<IonTrapCalibrationBlock>},
    {LINEARCalibrationBlock::Type, readBlock<LINEARCalibrationBlock>},
};

const ICalibSerialization& facetOf(const ICalibrationTransformator& transformator) {
    const auto* const facet = dynamic_cast<const ICalibSerialization*>(&transformator);
    if (facet == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument("Transformer does not offer serialization interface."));
    return *facet;
}

void writeBlob(const ICalibrationTransformator& transformator, BlobForm form, std::vector<unsigned char>& blob) {
    const ICalibSerialization& facet = facetOf(transformator);
    CalibBlobWriteAccess access(blob);
    CalibratorUtil::WriteRecord(access, CalibBlobHead{facet.GetBlobType(form), 0});
    facet.SerializeToBlob(form, access);
}

void writeNoTransformator(std::vector<unsigned char>& blob) {
    CalibBlobWriteAccess access(blob);
    CalibratorUtil::WriteRecord(access, CalibBlobHead{g_noTransformator, 0});
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
    if (head.hasGpx > 1)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromBlob: "
                               "Invalid serialization: transformator type unknown."));
    if (head.hasGpx == 1 || !access.IsAtEnd())
        throwNotSupported();
    return transformator;
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

}  // namespace kvan::calibration::Transformation
