#pragma once

#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/ICalibSerialization.h"
#include "transformation/conversion/CCOConversionUtil.h"

#include <boost/throw_exception.hpp>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace kvan::calibration {

/// Throws `std::invalid_argument` for a transformator without a stored form.
inline const ICalibSerialization& storedFormOf(const ICalibrationTransformator& transformator) {
    const auto* const facet = dynamic_cast<const ICalibSerialization*>(&transformator);
    if (facet == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument("Transformer does not offer serialization interface."));
    return *facet;
}

/// Throws `std::invalid_argument` for the reference form, of a family that has none.
inline void requirePlainForm(BlobForm form) {
    if (form != BlobForm::Plain)
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: the family has no reference form"));
}

/// A count as a block holds it. Throws `std::invalid_argument` for more.
inline std::uint16_t storedCount(std::size_t count) {
    if (count > std::numeric_limits<std::uint16_t>::max())
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: too many coefficients for a blob"));
    return static_cast<std::uint16_t>(count);
}

/// An offset as a block holds it. Throws `std::invalid_argument` for more.
inline std::uint32_t storedOffset(std::size_t offset) {
    if (offset > std::numeric_limits<std::uint32_t>::max())
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: too many coefficients for a blob"));
    return static_cast<std::uint32_t>(offset);
}

template <class Block>
void writeBlock(const ICalibrationTransformator& transformator, tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
    Block block{};
    CCOConversionUtil::MapCCO2QSF(transformator, block);
    tqclegacy::CALIBRATION::CalibratorUtil::WriteRecord(access, block);
}

/// Stored form of a family whose blobs hold one block of fixed size; `ReferenceBlock` is void if the family has no
/// reference form.
template <class PlainBlock, class ReferenceBlock = void>
struct StoredBlocks {
    static std::uint16_t Type(const ICalibrationTransformator&, BlobForm form) {
        if constexpr (std::is_void_v<ReferenceBlock>) {
            requirePlainForm(form);
            return PlainBlock::Type;
        } else {
            return form == BlobForm::Plain ? PlainBlock::Type : ReferenceBlock::Type;
        }
    }

    static void Write(const ICalibrationTransformator& transformator, BlobForm form,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
        if constexpr (std::is_void_v<ReferenceBlock>)
            requirePlainForm(form);
        else if (form == BlobForm::Reference)
            return writeBlock<ReferenceBlock>(transformator, access);
        writeBlock<PlainBlock>(transformator, access);
    }
};

}  // namespace kvan::calibration
