#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"
#include "transformators.h"

#include <algorithm>
#include <boost/algorithm/hex.hpp>

#include <gtest/gtest.h>

namespace kvan::calibration {

namespace {

using Bytes = std::vector<unsigned char>;

const Transformation::CalibrationTransformatorFactorySerialization g_serialization;

const char* const g_unsupported = "runtime_error: Calibration family not supported yet.";
const char* const g_cut =
    "runtime_error: ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES";
const char* const g_badFlag =
    "runtime_error: kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromBlob: Invalid "
    "serialization: transformator type unknown.";

/// Bytes from hexadecimal digits; blanks set fields apart.
Bytes bytesOf(std::string digits) {
    digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
    Bytes bytes;
    boost::algorithm::unhex(digits, std::back_inserter(bytes));
    return bytes;
}

TransformatorPtr read(const Bytes& blob) {
    return g_serialization.DeserializeFromBlob(blob);
}

Bytes written(const TransformatorPtr& transformator) {
    Bytes blob{1, 2, 3};
    if (transformator && transformator->GetMeasurementModeInfo())
        g_serialization.SerializeReferenceToBlob(transformator, blob);
    else
        g_serialization.SerializeToBlob(transformator, blob);
    return blob;
}

std::string failureOfReading(const Bytes& blob) {
    return failureOf([&] { read(blob); });
}

// Doubles: 4024.. 10.0, 3FE0.. 0.5, 4020.. 8.0, 424D1A94A2000000 2.5e11, BFC0.. -0.125, 3FF0.. 1.0, 4000.. 2.0.
const Bytes g_tof =
    bytesOf("0100 0000 0000000000002440 000000000000E03F 0000000000002040 000000A2941A4D42 000000000000C0BF");
const Bytes g_tofReference = bytesOf(
    "0400 0000 0000000000002440 000000000000E03F 0000000000002040 000000A2941A4D42 0000000000000000 02 01 03 00");
const Bytes g_ionTrap =
    bytesOf("0110 0000 000000000000F03F 0000000000000040 000000000000E03F 0000000000002040 0000000000002440");
const Bytes g_linear = bytesOf("0210 0000 000000000000F03F 0000000000000040");
const Bytes* const g_blobs[] = {&g_tof, &g_tofReference, &g_ionTrap, &g_linear};

TEST(CalibrationBlob, HoldsTheConstantsAtTheirOffsets) {
    EXPECT_TRUE(read(g_tof)->IsEqual(*tof(8, 2.5e11, -0.125, 10, 0.5)));
    EXPECT_TRUE(read(g_tofReference)->IsEqual(*tof(8, 2.5e11, 0, 10, 0.5)));
    EXPECT_TRUE(read(g_ionTrap)->IsEqual(*paladin(1, 2, 0.5, 10, 8)));
    EXPECT_TRUE(read(g_linear)->IsEqual(*linear(1, 2)));

    const auto mode = read(g_tofReference)->GetMeasurementModeInfo();
    EXPECT_EQ(mode->GetAcquisitionMode(), 2);
    EXPECT_EQ(mode->GetPolarity(), 1);
    EXPECT_EQ(mode->GetMSMSLevel(), 3);
    EXPECT_EQ(mode->GetScanMode(), 0);
    EXPECT_EQ(read(g_tof)->GetMeasurementModeInfo(), nullptr);
}

TEST(CalibrationBlob, WritesTheBytesThatItReads) {
    for (const Bytes* blob : g_blobs)
        EXPECT_EQ(written(read(*blob)), *blob);
    EXPECT_EQ(written(nullptr), bytesOf("FF000000"));
}

TEST(CalibrationBlob, CutAnywhereIsAReadError) {
    EXPECT_EQ(read({}), nullptr);
    for (const Bytes* blob : g_blobs)
        for (std::size_t size = 1; size < blob->size(); ++size)
            EXPECT_EQ(failureOfReading(Bytes(blob->begin(), blob->begin() + static_cast<std::ptrdiff_t>(size))), g_cut)
                << size;
}

TEST(CalibrationBlob, ATypeOfNoFamilyIsEmptyWhateverFollows) {
    for (const char* blob : {"FF000000", "05000000", "00000000", "0D000100", "0010FFFF 01", "FFFFFFFF 0102030405"})
        EXPECT_EQ(read(bytesOf(blob)), nullptr) << blob;
    EXPECT_EQ(failureOfReading(bytesOf("FF0000")), g_cut);
}

TEST(CalibrationBlob, IsCheckedInTheOrderBlockFlagCorrectionExtension) {
    const auto withFlag = [](Bytes blob, unsigned char flag, std::size_t change) {
        blob[2] = flag;
        blob.resize(blob.size() + change);
        return blob;
    };
    EXPECT_EQ(failureOfReading(withFlag(g_tof, 2, std::size_t(-1))), g_cut);
    EXPECT_EQ(failureOfReading(withFlag(g_tof, 2, 0)), g_badFlag);
    EXPECT_EQ(failureOfReading(withFlag(g_linear, 2, 24)), g_badFlag);
    EXPECT_EQ(failureOfReading(withFlag(g_ionTrap, 1, 40)), g_unsupported);
    EXPECT_EQ(failureOfReading(withFlag(g_tofReference, 0, 1)), g_unsupported);
    for (const char* head : {"0200", "0300", "0600", "0700", "0800", "0900", "0A00", "0B00", "0C00", "0101"})
        EXPECT_EQ(failureOfReading(bytesOf(head + std::string("0000"))), g_unsupported) << head;
}

TEST(CalibrationBlob, RefusesToWriteTheOtherForm) {
    Bytes blob;
    const auto reference = read(g_tofReference);
    EXPECT_EQ(failureOf([&] { g_serialization.SerializeToBlob(reference, blob); }),
              "logic_error: invalid serialization: a reference transformator is serialized as a normal one");
    EXPECT_NE(failureOf([&] { g_serialization.SerializeReferenceToBlob(read(g_tof), blob); }), "");
    const auto trap = read(g_ionTrap);
    trap->SetMeasurementModeInfo(reference->GetMeasurementModeInfo());
    EXPECT_EQ(failureOf([&] { g_serialization.SerializeReferenceToBlob(trap, blob); }),
              "invalid_argument: invalid serialization: the family has no reference form");
}

}  // namespace

}  // namespace kvan::calibration
