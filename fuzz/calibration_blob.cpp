// Any bytes end in a transformator, in none, or in an exception; what was accepted is written back byte for byte, and
// its conversions end in numbers or in the law's failure.

#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace {

using kvan::calibration::ICalibrationTransformator;
using Serialization = kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization;
using Bytes = std::vector<unsigned char>;

std::shared_ptr<ICalibrationTransformator> read(const Serialization& serialization, const Bytes& blob) {
    try {
        return serialization.DeserializeFromBlob(blob);
    } catch (const std::runtime_error&) {
    } catch (const std::invalid_argument&) {
    }
    return nullptr;
}

void convert(const ICalibrationTransformator& transformator) {
    std::vector<double> masses;
    for (const std::int32_t last : {3, 300})
        try {
            transformator.IndexRangeToMasses(-2, last, masses);
            transformator.MassesToDIndices(masses);
            transformator.IndexWidthToMassWidth(500.0, 10.0);
        } catch (const std::logic_error&) {
        } catch (const std::runtime_error&) {
        }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Serialization serialization;
    const Bytes blob(data, data + size);
    const auto transformator = read(serialization, blob);
    if (!transformator)
        return 0;
    convert(*transformator);
    Bytes written;
    if (transformator->GetMeasurementModeInfo())
        serialization.SerializeReferenceToBlob(transformator, written);
    else
        serialization.SerializeToBlob(transformator, written);
    if (written != blob)
        std::abort();
    return 0;
}
