#pragma once

#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "legacycalibration/serialization/CalibratorUtil.h"
#include "serialization/ICalibSerialization.h"
#include "transformation/conversion/CCOConversionUtil.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <type_traits>

namespace kvan::calibration {

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
        if (form == BlobForm::Plain)
            return PlainBlock::Type;
        if constexpr (!std::is_void_v<ReferenceBlock>)
            return ReferenceBlock::Type;
        throwNoReferenceForm();
    }

    static void Write(const ICalibrationTransformator& transformator, BlobForm form,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
        if (form == BlobForm::Plain)
            return writeBlock<PlainBlock>(transformator, access);
        if constexpr (!std::is_void_v<ReferenceBlock>)
            return writeBlock<ReferenceBlock>(transformator, access);
        throwNoReferenceForm();
    }

private:
    [[noreturn]] static void throwNoReferenceForm() {
        BOOST_THROW_EXCEPTION(std::invalid_argument("invalid serialization: the family has no reference form"));
    }
};

}  // namespace kvan::calibration
