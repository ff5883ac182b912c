#include "blobs.h"

namespace kvan::calibration {

namespace {

using i32 = std::int32_t;

/// Parent mass, correction time, kite time, calibration parent mass, calib times; indices, ignore; coefficients.
Bytes kite1Block(u32 offset, u16 count) {
    return head(7) + g_tofBlock + packed(400.0, 3.0, 7.5, 100.0, 1.0, 50.0, i32{-5}, i32{900}) +
           packed(u16{1}, offset, count, 1.0, 0.5, 0.25, 2.0);
}

const Bytes g_kite1 = kite1Block(104, 4);

/// URefFull, USegment, calibration and parent mass; argument range, mode; SPC and OCP coefficients, a third array.
Bytes psdBlock(i32 mode, u32 classicOffset, u16 classicCount) {
    return head(6) + g_tofBlock + packed(20.25, 2.5, 100.0, 400.0, i32{4}, i32{100}, mode) +
           packed(u32{104}, u32{128}, classicOffset, u16{3}, u16{3}, classicCount, u16{0}) +
           packed(0.5, 0.25, 2.0, 0.5, 0.015625, 0.0, 42.0);
}

const Bytes g_psd = psdBlock(2, 152, 1);

/// Parent mass and reference time, the two at calibration; indices, ignore; counts and offsets; the global polynomial,
/// two parent polynomials, VC0 coefficients.
Bytes kite2Block(u16 parents, u32 globalOffset, u32 firstParent, u32 vc0Offset) {
    return head(8) + g_tofBlock + packed(400.0, 3.0, 500.0, 2.5, i32{-5}, i32{900}, u32{1}, parents, u16{2}) +
           packed(globalOffset, firstParent, vc0Offset) + packed(0.0, 1.0, 2.0, u16{0}, u16{2}, u32{32}, 0.0, 1.0) +
           packed(1.0, 50.0, 100.0, u16{0}, u16{3}, u32{32}, 10.0, 4.0, 0.5) +
           packed(3.0, 30.0, 900.0, u16{0}, u16{3}, u32{32}, 9.0, 6.0, 3.0) + packed(1.0, 0.5);
}

const Bytes g_kite2 = kite2Block(2, 100, 148, 260);

/// The text of the same calibration.
const std::string g_axisText = "V3.0CTOFCalibrationConstants 10 0.5 8 250000000000 -0.125 0 ";
const std::string g_kite1Text =
    "V3.0CCalibrator 7" + g_tail + "V3.0CKITECalibrationConstants " + g_axisText +
    "0 0 0 1 400 3 7.5 100 1 50 V1.0VectorDouble 4 1 0.5 0.25 2 V1.0VectorDouble 4 4 1 0.25 1 0 -5 900 0 0" + g_noGpx;

// sum = 0.5 + 50 / 64 = 1.28125: the factor of the coefficients is 2.50128125.
const std::string g_psdNumbers =
    "20.25 2.5 100 400 4 100 V1.0VectorDouble 3 0.5 0.25 2 V1.0VectorDouble 3 0.5 0.015625 0 V1.0VectorDouble 1 42 "
    "V1.0VectorDouble 3 5.0025624999999998 1.25064062499999995 5.0025624999999998 ";
const std::string g_psdText =
    "V3.0CCalibrator 6" + g_tail + "V3.0CPSDCalibrationConstants " + g_axisText + "2 " + g_psdNumbers + "0 0" + g_noGpx;

const std::string g_global = "V1.0CCalibPolynomial V1.0VectorDouble 2 0 1 0 1 2 ";
const std::string g_parents =
    "2 V1.0CCalibPolynomial V1.0VectorDouble 3 10 4 0.5 1 50 100 V1.0CCalibPolynomial V1.0VectorDouble 3 9 6 3 3 30 "
    "900 ";
/// Two lists of what has no use: the global polynomial again and the one for the parent mass.
const std::string g_kite2Text = "V3.0CCalibrator 10" + g_tail + "V1.0CKite2CalibrationConstants " + g_axisText +
                                g_parents + g_global + "V1.0VectorDouble 2 1 0.5 0 0 400 3 500 " + g_global +
                                "V1.0CCalibPolynomial V1.0VectorDouble 3 11 4 0.25 2 100 400 -5 900 1 0 0 0" + g_noGpx;

const std::pair<const Bytes&, const std::string&> g_pairs[] = {
    {g_kite1, g_kite1Text}, {g_psd, g_psdText}, {g_kite2, g_kite2Text}};

TEST(WrappingBlob, HoldsTheNumbersAtTheirOffsets) {
    // rho = 4: coefficients 4, 1, 0.25, 1; at t = 5 - 3 the mass is 4 + 2 + 1 + 8.
    EXPECT_EQ(read(g_kite1)->RawToMass(5), 15);
    const auto inner = read(head(1) + g_tofBlock);
    EXPECT_TRUE(read(g_kite1)->IsEqual(
        *factory().createTransformatorKite(inner, {400, 3, 7.5, 100, {1, 50}, {-5, 900}, true, {1, 0.5, 0.25, 2}})));
    auto psd = psdNumbers(4, 100);
    psd.uRefFull = 20.25;
    psd.ocp = {0.5, 0.015625, 0};
    EXPECT_TRUE(read(g_psd)->IsEqual(
        *factory().createTransformatorPsd(inner, std::make_shared<CalibrationPolynomialPSDFAST>(psd))));
    auto kite2 = kite2Between(0);
    kite2.measuredParentMass = 500;
    kite2.measuredReferenceTime = 2.5;
    kite2.indexRange = {-5, 900};
    kite2.global = {{0, 1}, 0, 1, 2};
    kite2.vc0 = {1, 0.5};
    EXPECT_TRUE(read(g_kite2)->IsEqual(*factory().createTransformatorKite2(inner, kite2)));
}

TEST(WrappingBlob, AndTextAreOneCalibration) {
    for (const auto& [blob, text] : g_pairs) {
        EXPECT_EQ(read(blob)->IndexToRaw(2), 11);
        EXPECT_EQ(written(read(blob)), blob);
        expectCutFails(blob);
        EXPECT_EQ(textOf(read(blob)), text);
        EXPECT_EQ(textOf(readText(text)), text);
        EXPECT_TRUE(readText(text)->IsEqual(*read(blob)));
        Bytes fromText = written(readText(text));
        if (blob[0] == 8)  // a text has no place for the reference time at calibration
            std::copy_n(blob.begin() + 68, 8, fromText.begin() + 68);
        EXPECT_EQ(fromText, blob);
    }
}

TEST(WrappingBlob, ArraysThatTheBlobCannotHoldAreAReadError) {
    for (const Bytes& blob : {kite1Block(104, 5), kite1Block(105, 4), kite1Block(0xFFFFFFFF, 1),
                              kite1Block(104, 0xFFFF), kite1Block(0xFFFFFFF8, 0xFFFF)})
        EXPECT_EQ(failureOfReading(blob), g_cut);
    EXPECT_EQ(read(kite1Block(72, 8))->RawToMass(3), 4);  // the first coefficient is the calib time 1
    EXPECT_EQ(failureOf([] { read(kite1Block(104, 0))->RawToMass(5); }), g_noExtension);
}

TEST(WrappingBlob, PolynomialsThatTheBlobCannotHoldAreAReadError) {
    for (const Bytes& blob :
         {kite2Block(3, 100, 148, 260), kite2Block(0xFFFF, 100, 148, 260), kite2Block(2, 0xFFFFFFFF, 148, 260),
          kite2Block(2, 245, 148, 260), kite2Block(2, 100, 0xFFFFFFFF, 260), kite2Block(2, 100, 148, 0xFFFFFFFF),
          kite2Block(2, 100, 148, 261)})
        EXPECT_EQ(failureOfReading(blob), g_cut);
    EXPECT_EQ(failureOfReading(kite2Block(0, 100, 0xFFFFFFFF, 260)),
              "argument: CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial");
    // Records may lie anywhere: the second parent alone is 11, 6, 4.5 on [2, 20], with VC0(20) = 11.
    EXPECT_EQ(read(kite2Block(1, 100, 204, 260))->MassToRaw(16), 107 + 3);
}

TEST(WrappingBlob, OfALawThatIsMixedFromTwoParentsKeepsTheMasses) {
    for (const char* mode : {" 1 0 ", " 2 0 ", " 3 0 "}) {
        std::string text = g_kite2Text;
        text.replace(text.find(" 0 0 400 "), 5, mode);
        const auto mixed = readText(text);
        EXPECT_NE(mixed->MassToRaw(16), read(g_kite2)->MassToRaw(16));
        testing::internal::CaptureStdout();
        const Bytes blob = written(mixed);
        EXPECT_NE(testing::internal::GetCapturedStdout().find(
                      "[WARN ] kvan.calibration_core.Kite2Transformator: Of an interpolated KITE 2 calibration only "
                      "the polynomial for its parent mass is kept in its blob.\n"),
                  std::string::npos);
        for (const double mass : {1.0, 16.0, 300.0, 2000.0})
            EXPECT_EQ(read(blob)->MassToRaw(mass), mixed->MassToRaw(mass)) << mode << mass;
        EXPECT_EQ(textOf(mixed).find(mode), text.find(mode));
    }
}

TEST(WrappingText, Kite2HasOneVersion) {
    const char* const operation = "DeserializeFromStringKITE2";
    const std::string polynomial =
        "argument: DeserializePolynomialSimple: Invalid polynomial string:  was data written with a newer software?";
    const std::string start = "V1.0CCalibrator 10 1 V1.0CKite2CalibrationConstants " + g_axisText;
    EXPECT_EQ(failureOfReadingText("V1.0CCalibrator 10 1 V2.0CKite2CalibrationConstants"),
              prefixFailure(operation, "V2.0CKite2CalibrationConstants"));
    EXPECT_EQ(failureOfReadingText(start + "two"), prefixFailure(operation, "two"));
    EXPECT_EQ(failureOfReadingText(start + "2000000000 "), polynomial);
    EXPECT_EQ(failureOfReadingText(start + "1 V2.0CCalibPolynomial 1 0 0 0"), polynomial);
    EXPECT_EQ(failureOfReadingText(start + "1 V1.0CCalibPolynomial 1 0 x 0"), prefixFailure(operation, "x"));
    EXPECT_EQ(failureOfReadingText(start + "0 " + g_global + "V1.0VectorDouble 0 0 0 1 2 3 " + g_global + g_global +
                                   "0 0 1 0 0 0"),
              "argument: CalibrationTransformatorFactory::createTransformatorKite2: can't create kite2Polynomial");
    EXPECT_EQ(failureOfReadingText(g_kite2Text.substr(0, g_kite2Text.find(" 0 0 0 V1.0CGPX") + 4)),
              prefixFailure(operation, ""));
}

TEST(WrappingBlob, OnlyTheFastPsdModeHasAPolynomial) {
    EXPECT_EQ(failureOfReading(psdBlock(1, 152, 1)),
              "argument: CCOConversionUtil::MapQSF2CCO: classic psd mode (mode 1) is not supported any more.");
    for (const i32 mode : {0, 3, -1}) {
        testing::internal::CaptureStdout();
        const auto plain = read(psdBlock(mode, 152, 1));
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "warning: CCOConversionUtil::MapQSF2CCO: unknown psd mode.\n");
        EXPECT_EQ(plain->RawToMass(12), read(head(1) + g_tofBlock)->RawToMass(12));
        EXPECT_EQ(written(plain)[84], 0);
        EXPECT_EQ(failureOf([&] { textOf(plain); }),
                  "argument: CalibrationTransformatorPSD::SerializeDataToString: fastPolynomial is not of type "
                  "ICalibrationSerializationConstantsPtr");
    }
    EXPECT_EQ(failureOfReading(psdBlock(2, 152, 2)), g_cut);
}

TEST(WrappingText, EveryVersionOfPsdIsRead) {
    const auto text = [](const char* version, const std::string& mode, const std::string& rest) {
        return std::string("V1.0CCalibrator 6 1 ") + version + "CPSDCalibrationConstants " + g_axisText + mode +
               g_psdNumbers + rest;
    };
    const std::string vector = "V1.0VectorDouble 2 1 2 ";
    const std::string whole = textOf(readText(g_psdText));
    for (const std::string& older : {text("V1.0", "2 ", vector + vector + "7 " + vector + "7"),
                                     text("V2.0", "2 ", "7 " + vector + "1.5 2.5"), text("V3.0", "2 ", "1 7")})
        EXPECT_EQ(textOf(readText(older)), whole);

    const std::string mode = "runtime: CalibrationTransformatorFactorySerialization::DeserializeFromStringPSD: ";
    const std::string bad =
        g_reader + "FromStringPSD: Invalid calibration string, ignoring. Was data written with newer software?";
    EXPECT_EQ(failureOfReadingText(text("V3.0", "1 ", "0 0")), mode + "psd classic mode is no longer supported.");
    for (const char* other : {"0 ", "3 "})
        EXPECT_EQ(failureOfReadingText(text("V3.0", other, "0 0")),
                  mode + "Invalid calibration serialization: Unknown psd type.");
    for (const auto& damaged : {text("V3.0", "two ", "0 0"), text("V3.0", "2 ", "0"), text("V3.0", "2 ", "2 0"),
                                text("V2.0", "2 ", "7 " + vector + "1.5")})
        EXPECT_EQ(failureOfReadingText(damaged), bad) << damaged;
    EXPECT_EQ(failureOfReadingText(text("V1.0", "2 ", vector)), "runtime: vector deserialization");
    EXPECT_EQ(failureOfReadingText(text("V3.0", "2 x ", "0 0")), "runtime: vector deserialization");
}

TEST(WrappingText, EveryVersionOfKite1IsRead) {
    const auto text = [](const char* version, const std::string& ignore, const std::string& rest) {
        return std::string("V1.0CCalibrator 7 1 ") + version + "CKITECalibrationConstants " + g_axisText + "1 2 3 " +
               ignore + "400 3 7.5 100 1 50 V1.0VectorDouble 4 1 0.5 0.25 2 9.5 0 -5 900 " + rest;
    };
    const std::string vector = "V1.0VectorDouble 2 1 2 ";
    const std::string whole = textOf(readText(text("V3.0", "0 ", "0 0")));
    for (const auto& older :
         {text("V1.0", "", vector + vector + vector + vector + "7"), text("V2.0", "", "7 " + vector + "1.5 2.5"),
          text("V2.1", "0 ", "7 " + vector + "1.5 2.5 1 7"), text("V3.0", "0 ", "1 7")})
        EXPECT_EQ(textOf(readText(older)), whole) << older;

    const std::string reading = g_reader + "FromStringKITE: While reading ";
    const std::string newer = ": Invalid calibration string, ignoring. Was data written with newer software?";
    for (const auto& cut :
         {text("V2.1", "0 ", "7 " + vector + "1.5 2.5 1"), text("V3.0", "0 ", "2 7"), text("V3.0", "0 ", "1")})
        EXPECT_EQ(failureOfReadingText(cut), reading + "iDummy" + newer) << cut;
    EXPECT_EQ(failureOfReadingText(text("V2.0", "", "7 V3.0VectorDouble 1 1 2 3")), "runtime: vector deserialization");
    const std::string upToLimits = text("V3.0", "0 ", "");
    EXPECT_EQ(failureOfReadingText(upToLimits.substr(0, upToLimits.size() - 4)), reading + "calibMode" + newer);
    EXPECT_EQ(failureOfReadingText(text("V3.0", "2 ", "1 7")), "runtime: vector deserialization");
    EXPECT_EQ(failureOfReadingText("V1.0CCalibrator 7 1 V2.2CKITECalibrationConstants "),
              prefixFailure("DeserializeFromStringKITE", "V2.2CKITECalibrationConstants"));
    EXPECT_EQ(failureOfReadingText("V1.0CCalibrator 7 1 V2.0CKITECalibrationConstants 1"),
              prefixFailure("DeserializeFromStringLinear", "1"));
}

/// G(m) = 2 m + 1 on [1, 400].
const Bytes g_correction = packed(0.0, 0.0, 1.0, 400.0, u16{1}, u16{2}, u32{40}, 1.0, 2.0);

TEST(WrappingForms, TakeACorrectionAndARangeAroundThem) {
    const std::string correctionText =
        " V1.0CGPXData  Order 1 vCoeff V1.0VectorDouble 2 1 2  c2 0 c0 0 minMass 1 maxMass 400 bUse 1 endCGPXData ";
    for (const auto& [plainBlob, plainText] : g_pairs) {
        const Bytes blob = flagged(plainBlob) + g_correction;
        EXPECT_EQ(written(read(blob)), blob);
        EXPECT_EQ(read(blob)->MassToDIndex(50), read(plainBlob)->MassToDIndex(101));

        std::string text = plainText.substr(0, plainText.find(g_noGpx)) + correctionText;
        EXPECT_EQ(textOf(readText(text)), text);
        EXPECT_EQ(readText(text)->MassToDIndex(50), read(blob)->MassToDIndex(50));
        text.replace(text.find(g_tail), g_tail.size(), " 1 4 1 0 3 ");
        EXPECT_EQ(textOf(readText(text)), text);
        EXPECT_EQ(readText(text)->GetIndexOffset(), 4);
    }
}

}  // namespace

}  // namespace kvan::calibration
