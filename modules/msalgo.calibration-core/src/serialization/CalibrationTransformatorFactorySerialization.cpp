#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"

#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/CompensationExtensions.h"
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

TransformatorPtr readUnsupported(CalibBlobReadAccess&, const Factory&) {
    throwNotSupported();
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
    {6, readUnsupported, DeserializeExtension},  // PSDCalibrationBlock
    {7, readUnsupported, DeserializeExtension},  // KITE 1
    {8, readUnsupported, DeserializeExtension},  // KITE 2
    {TOF2CalibrationBlock::Type, readBlock<TOF2CalibrationBlock>, DeserializeExtension},
    {Tof2TempCorrCalibrationBlock::Type, readTof2Compensated, DeserializeExtension},
    {TOF2CalibrationRefBlock::Type, readBlock<TOF2CalibrationRefBlock>, DeserializeRefExtension},
    {Tof2TempCorrCalibrationRefBlock::Type, readTof2CompensatedReference, DeserializeRefExtension},
    {FTMSCalibrationBlock::Type, readBlock<FTMSCalibrationBlock>, DeserializeExtension},
    {IonTrapCalibrationBlock::Type, readBlock<IonTrapCalibrationBlock>, DeserializeExtension},
    {LINEARCalibrationBlock::Type, readBlock<LINEARCalibrationBlock>, DeserializeExtension},
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
    SerializeExtension(transformator, form, access);
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
    access.SeekToFarthest();  // arrays may stand in any order, and overlap
    if (head.hasGpx > 1)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromBlob: "
                               "Invalid serialization: transformator type unknown."));
    if (head.hasGpx == 1)
        throwNotSupported();
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

}  // namespace kvan::calibration::Transformation
