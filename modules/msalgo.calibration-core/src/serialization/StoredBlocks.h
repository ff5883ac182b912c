#pragma once

#include "families/CalibrationFamilies.h"
#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "transformation/conversion/CCOConversionUtil.h"

#include <boost/throw_exception.hpp>
#include <limits>
#include <stdexcept>

namespace kvan::calibration {

/// Throws `std::invalid_argument` for the reference form, of a family that has none.
inline void requirePlainForm(BlobForm form) {
    if (form != BlobForm::Plain)
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: the family has no reference form"));
}

/// A number as a block holds it. Throws `std::invalid_argument` for more.
template <class Stored>
Stored storedNumber(std::size_t number) {
    if (number > std::numeric_limits<Stored>::max())
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: too many coefficients for a blob"));
    return static_cast<Stored>(number);
}
inline std::uint16_t storedCount(std::size_t count) {
    return storedNumber<std::uint16_t>(count);
}
inline std::uint32_t storedOffset(std::size_t offset) {
    return storedNumber<std::uint32_t>(offset);
}

template <class Block>
std::shared_ptr<ICalibrationTransformator> readBlock(tqclegacy::CALIBRATION::CalibBlobReadAccess& access,
                                                     const ICalibrationTransformatorFactory& factory) {
    return CCOConversionUtil::MapQSF2CCO(tqclegacy::CALIBRATION::CalibratorUtil::ReadRecord<Block>(access), factory);
}

/// By `description`; without one the family says all.
template <class Block, BlockDescription (*description)(const Block&) = nullptr>
std::optional<BlockDescription> describeBlock(tqclegacy::CALIBRATION::CalibBlobReadAccess& access) {
    Block block;
    if (!access.Read(&block, sizeof block))
        return {};
    if constexpr (description == nullptr)
        return BlockDescription{};
    else
        return description(block);
}

/// Of a law with a linear and a quadratic form: which it is, as the factory chooses it.
inline CalibrationBlobDescription::Degree degreeOf(double quadraticTerm) {
    return quadraticTerm != 0.0 ? CalibrationBlobDescription::Degree::Quadratic
                                : CalibrationBlobDescription::Degree::Linear;
}

template <class Block>
void writeBlock(const ICalibrationTransformator& transformator, tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
    Block block{};
    CCOConversionUtil::MapCCO2QSF(transformator, block);
    tqclegacy::CALIBRATION::CalibratorUtil::WriteRecord(access, block);
}

// Of a family whose blobs hold one block of fixed size, without a reference form.

template <class Block>
std::uint16_t typeOfPlain(const ICalibrationTransformator&, BlobForm form) {
    requirePlainForm(form);
    return Block::Type;
}

template <class Block>
void writePlain(const ICalibrationTransformator& transformator, BlobForm form,
                tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
    requirePlainForm(form);
    writeBlock<Block>(transformator, access);
}

}  // namespace kvan::calibration
