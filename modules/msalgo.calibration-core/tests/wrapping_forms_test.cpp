#include "blobs.h"

#include <gtest/gtest.h>

namespace kvan::calibration {

namespace {

using i32 = std::int32_t;

const Bytes g_axis = packed(10.0, 0.5, 8.0, 2.5e11, -0.125);

/// Parent mass, correction time, kite time, calibration parent mass, calib times; indices, ignore; coefficients.
Bytes kite1Block(u32 offset, u16 count) {
    return head(7) + g_axis + packed(400.0, 3.0, 7.5, 100.0, 1.0, 50.0, i32{-5}, i32{900}) +
           packed(u16{1}, offset, count, 1.0, 0.5, 0.25, 2.0);
}

const Bytes g_kite1 = kite1Block(104, 4);

const Bytes* const g_blobs[] = {&g_kite1};

/// The text of the same calibration.
const std::string g_tail = " 1 0 0 -2147483648 2147483647 ";
const std::string g_axisText = "V3.0CTOFCalibrationConstants 10 0.5 8 250000000000 -0.125 0 ";
const std::string g_noGpx =
    " V1.0CGPXData  Order 0 vCoeff V1.0VectorDouble 0  c2 0 c0 0 minMass 0 maxMass 0 bUse 0 endCGPXData ";
const std::string g_kite1Text = "V3.0CCalibrator 7" + g_tail + "V3.0CKITECalibrationConstants " + g_axisText +
                                "0 0 0 1 400 3 7.5 100 1 50 V1.0VectorDouble 4 1 0.5 0.25 2 "
                                "V1.0VectorDouble 4 4 1 0.25 1 0 -5 900 0 0" +
                                g_noGpx;

struct BlobAndText {
    const Bytes& blob;
    const std::string& text;
};

const BlobAndText g_pairs[] = {{g_kite1, g_kite1Text}};

TransformatorPtr readText(const std::string& text) {
    return g_serialization.DeserializeFromString(text);
}

TEST(WrappingBlob, HoldsTheNumbersAtTheirOffsets) {
    // rho = 4: coefficients 4, 1, 0.25, 1; at t = 5 - 3 the mass is 4 + 2 + 1 + 8.
    EXPECT_EQ(read(g_kite1)->RawToMass(5), 15);
    EXPECT_TRUE(read(g_kite1)->IsEqual(
        *factory().createTransformatorKite(read(head(1) + g_axis), {.parentMass = 400,
                                                                    .correctionTime = 3,
                                                                    .kiteTime = 7.5,
                                                                    .calibrationParentMass = 100,
                                                                    .calibTimeRange = {1, 50},
                                                                    .indexRange = {-5, 900},
                                                                    .ignoreIndexBounds = true,
                                                                    .coefficients = {1, 0.5, 0.25, 2}})));
    for (const Bytes* blob : g_blobs)
        EXPECT_EQ(read(*blob)->IndexToRaw(2), 11);
}

TEST(WrappingBlob, AndTextAreOneCalibration) {
    for (const auto& [blob, text] : g_pairs) {
        EXPECT_EQ(written(read(blob)), blob);
        EXPECT_EQ(g_serialization.SerializeToString(read(blob)), text);
        EXPECT_EQ(g_serialization.SerializeToString(readText(text)), text);
        EXPECT_EQ(written(readText(text)), blob);
    }
}

TEST(WrappingBlob, CutAnywhereIsAReadError) {
    for (const Bytes* blob : g_blobs)
        for (std::size_t size = 1; size < blob->size(); ++size)
            EXPECT_EQ(failureOfReading(Bytes(blob->begin(), blob->begin() + static_cast<std::ptrdiff_t>(size))), g_cut)
                << size;
}

TEST(WrappingBlob, ArraysThatTheBlobCannotHoldAreAReadError) {
    for (const Bytes& blob : {kite1Block(104, 5), kite1Block(105, 4), kite1Block(0xFFFFFFFF, 1),
                              kite1Block(104, 0xFFFF), kite1Block(0xFFFFFFF8, 0xFFFF)})
        EXPECT_EQ(failureOfReading(blob), g_cut);
    EXPECT_EQ(read(kite1Block(72, 8))->RawToMass(3), 4);  // the first coefficient is the calib time 1
    EXPECT_EQ(failureOf([] { read(kite1Block(104, 0))->RawToMass(5); }),
              "runtime_error: kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeExtension: "
              "invalid serialization: id unknown");
}

TEST(WrappingText, EveryVersionOfKite1IsRead) {
    const auto text = [](const char* version, const std::string& ignore, const std::string& rest) {
        return std::string("V1.0CCalibrator 7 1 ") + version + "CKITECalibrationConstants " + g_axisText + "1 2 3 " +
               ignore + "400 3 7.5 100 1 50 V1.0VectorDouble 4 1 0.5 0.25 2 9.5 0 -5 900 " + rest;
    };
    const std::string vector = "V1.0VectorDouble 2 1 2 ";
    const struct {
        const char* version;
        std::string ignore, rest;
    } cases[] = {{"V1.0", "", vector + vector + vector + vector + "7"},
                 {"V2.0", "", "7 " + vector + "1.5 2.5"},
                 {"V2.1", "0 ", "7 " + vector + "1.5 2.5 1 7"},
                 {"V3.0", "0 ", "1 7"}};
    const std::string whole = g_serialization.SerializeToString(readText(text("V3.0", "0 ", "0 0")));
    for (const auto& sample : cases)
        EXPECT_EQ(g_serialization.SerializeToString(readText(text(sample.version, sample.ignore, sample.rest))), whole);

    const std::string reading =
        "runtime_error: kvan::calibration::CalibrationTransformatorFactorySerialization::DeserializeFromStringKITE: "
        "While reading ";
    const std::string newer = ": Invalid calibration string, ignoring. Was data written with newer software?";
    const auto failure = [&](const std::string& damaged) { return failureOf([&] { readText(damaged); }); };
    EXPECT_EQ(failure(text("V2.1", "0 ", "7 " + vector + "1.5 2.5 1")), reading + "iDummy" + newer);
    EXPECT_EQ(failure(text("V3.0", "0 ", "2 7")), reading + "iDummy" + newer);
    EXPECT_EQ(failure(text("V3.0", "0 ", "1")), reading + "iDummy" + newer);
    EXPECT_EQ(failure(text("V2.0", "", "7 V3.0VectorDouble 1 1 2 3")), "runtime_error: vector deserialization");
    const std::string upToLimits = text("V3.0", "0 ", "");
    EXPECT_EQ(failure(upToLimits.substr(0, upToLimits.size() - 4)), reading + "calibMode" + newer);
    EXPECT_EQ(failure(text("V3.0", "2 ", "1 7")), "runtime_error: vector deserialization");
    EXPECT_EQ(failure("V1.0CCalibrator 7 1 V2.2CKITECalibrationConstants "),
              "runtime_error: kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::"
              "DeserializeFromStringKITE: Calibration deserialization failed: invalid calibration constants prefix "
              "string 'V2.2CKITECalibrationConstants'.");
    EXPECT_EQ(failure("V1.0CCalibrator 7 1 V2.0CKITECalibrationConstants 1"),
              "runtime_error: kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::"
              "DeserializeFromStringLinear: Calibration deserialization failed: invalid calibration constants prefix "
              "string '1'.");
}

}  // namespace

}  // namespace kvan::calibration
