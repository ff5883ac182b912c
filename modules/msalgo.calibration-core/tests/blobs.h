#pragma once

#include "transformators.h"

#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <test-support/support.h>

namespace kvan::calibration {

using test::Bytes;
using u16 = std::uint16_t;
using u32 = std::uint32_t;

inline const Transformation::CalibrationTransformatorFactorySerialization g_serialization;

inline const char* const g_cut =
    "runtime: ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES";

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

/// `wholeSize` is where the block of the type may end before an extension.
inline void expectCutFails(const Bytes& blob, std::size_t wholeSize = 0) {
    for (std::size_t size = 1; size < blob.size(); ++size)
        EXPECT_EQ(failureOfReading(Bytes(blob.data(), blob.data() + size)), size == wholeSize ? "" : g_cut) << size;
}

/// With a correction after the block.
inline Bytes flagged(Bytes blob) {
    blob[2] = 1;
    return blob;
}

inline const Bytes g_key = test::fromHex("02 01 03 00");
inline const Bytes g_tofBlock = packed(10.0, 0.5, 8.0, 2.5e11, -0.125);
inline const Bytes g_tof2Block = g_tofBlock + packed(0.5, 4.0);
/// An extension with two factors.
inline const Bytes g_extension = packed(u16{49068}, u16{0}, u32{1}, u32{3}, u32{0}, u32{0}, u32{0}) +
                                 packed(u16{53152}, u16{0}, u32{36}, u32{0}, u32{20}, u16{2}, u16{0}, 25.5, 26.5);

inline const std::string g_reader =
    "runtime: kvan::calibration::CalibrationTransformatorFactorySerialization::Deserialize";
inline const std::string g_noExtension = g_reader + "Extension: invalid serialization: id unknown";

inline TransformatorPtr readText(const std::string& text) {
    return g_serialization.DeserializeFromString(text);
}

inline std::string failureOfReadingText(const std::string& text) {
    return failureOf([&] { readText(text); });
}

inline std::string textOf(const TransformatorPtr& transformator) {
    return g_serialization.SerializeToString(transformator);
}

/// The failure of a text that has `token` where `operation` expects a number or the name of constants.
inline std::string prefixFailure(const std::string& operation, const std::string& token) {
    return "runtime: kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::" + operation +
           ": Calibration deserialization failed: invalid calibration constants prefix string '" + token + "'.";
}

inline const std::string g_noCorrection = g_reader + "FromString: failed to create gpxTransformator";

/// What stands between the family and its constants, and after them, in a text without bounds and correction.
inline const std::string g_tail = " 1 0 0 -2147483648 2147483647 ";
inline const std::string g_noGpx =
    " V1.0CGPXData  Order 0 vCoeff V1.0VectorDouble 0  c2 0 c0 0 minMass 0 maxMass 0 bUse 0 endCGPXData ";

}  // namespace kvan::calibration
