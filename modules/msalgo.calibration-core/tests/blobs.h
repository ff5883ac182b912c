#pragma once

#include "transformators.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <test-support/support.h>

#include <algorithm>

namespace kvan::calibration {

using test::Bytes;
using u16 = std::uint16_t;
using u32 = std::uint32_t;

inline const Transformation::CalibrationTransformatorFactorySerialization g_serialization;

inline const char* const g_cut =
    "runtime_error: ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES";

/// The values as they lie in memory, packed.
template <class... Values>
inline Bytes packed(Values... values) {
    Bytes bytes((sizeof(Values) + ...));
    unsigned char* place = bytes.data();
    ((std::memcpy(place, &values, sizeof values), place += sizeof values), ...);
    return bytes;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
    std::copy(b.begin(), b.end(), std::back_inserter(a));
    return a;
}

inline Bytes head(u16 type) {
    return packed(type, u16{0});
}

inline TransformatorPtr read(const Bytes& blob) {
    return g_serialization.DeserializeFromBlob(blob);
}

inline Bytes written(const TransformatorPtr& transformator) {
    Bytes blob{1, 2, 3};
    if (transformator && transformator->GetMeasurementModeInfo())
        g_serialization.SerializeReferenceToBlob(transformator, blob);
    else
        g_serialization.SerializeToBlob(transformator, blob);
    return blob;
}

inline std::string failureOfReading(const Bytes& blob) {
    return failureOf([&] { read(blob); });
}

}  // namespace kvan::calibration
