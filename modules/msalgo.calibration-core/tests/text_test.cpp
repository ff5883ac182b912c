#include "blobs.h"

namespace kvan::calibration {

namespace {

const std::string g_class =
    "runtime: kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::";
const std::string g_headFailure = g_class + "DeserializeFromString: Error in serialization string.";
TransformatorPtr compensatedTof2() {
    CalibrationConstantsFunctionalTOF2TemperatureCompensation law(
        CalibrationConstantsFunctionalTOF2(8, 2.5e11, -0.125, 0.5, 4, 7));
    law.SetMeasuredTemperatures({25, 26.5});
    law.SetCorrectionFactors({});
    law.SetCompensationMode(TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL);
    return make(law, CalibrationConstantsPhysicalTOF(10, 0.5));
}

const std::pair<TransformatorPtr, std::string> g_cases[] = {
    {tof(8, 2.5e11, -0.125, 10, 0.5),
     "V3.0CCalibrator 1" + g_tail + "V3.0CTOFCalibrationConstants 10 0.5 8 250000000000 -0.125 0" + g_noGpx},
    {paladin(1, 0.1, 0, 24, 8),
     "V3.0CCalibrator 2" + g_tail + "V3.0CPaladinCalibrationConstants 1 0.100000000000000006 0 0 8 24" + g_noGpx},
    {ftms(4, -24, 1024, 240, 160, 5),
     "V3.0CCalibrator 3" + g_tail + "V3.0CICRCalibrationConstants 0 -24 1024 240 160 4 0 5 0" + g_noGpx},
    {ftmsQuadratic(1, -1e-300, -24, 1024, 240, 160, 5),
     "V3.0CCalibrator 3" + g_tail + "V3.0CICRCalibrationConstants -1.00000000000000003e-300 -24 1024 240 160 1 0 5 0" +
         g_noGpx},
    {linear(1, 2), "V3.0CCalibrator 4" + g_tail + "V3.0CLinearCalibrationConstants 0 1 1 2 0" + g_noGpx},
    {tof2(8, 2.5e11, -0.125, 0.5, 4, 10, 0.5),
     "V3.0CCalibrator 12" + g_tail + "V1.0CTOF2CalibrationConstants 10 0.5 8 250000000000 -0.125 0.5 4 0" + g_noGpx},
    {compensatedTof2(), "V3.0CCalibrator 13" + g_tail +
                            "V1.0CTOF2TemperatureCompensatedCalibrationConstants V1.0CTOF2CalibrationConstants 10 0.5 "
                            "8 250000000000 -0.125 0.5 4 7 3 V1.0VectorDouble 2 25 26.5 V1.0VectorDouble 0" +
                            g_noGpx},
};

TEST(CalibrationText, IsWrittenAndReadBack) {
    for (const auto& [transformator, text] : g_cases) {
        EXPECT_EQ(textOf(transformator), text);
        const auto again = readText(text);
        EXPECT_TRUE(again->IsEqual(*transformator)) << text;
        EXPECT_EQ(again->IndexToMass(3), transformator->IndexToMass(3)) << text;
        EXPECT_EQ(again->GetFunctionalTypeCode(), transformator->GetFunctionalTypeCode());
    }
}

TEST(CalibrationText, OlderVersionsAndFormsAreRead) {
    const std::string constants = "CTOFCalibrationConstants +10 5e-1 8 2.5e11\n\t-0.125 3";
    for (const char* text :
         {"V1.0CCalibrator 1 1 V1.0", "V1.0CCalibrator 1 109 V3.0", "V2.0CCalibrator\n1 100 4 0 7 8 V2.0"})
        EXPECT_EQ(readText(text + constants)->RawToMass(14), 16) << text;
    EXPECT_EQ(readText("V2.0CCalibrator 1 100 -4 0 7 8 V1.0" + constants)->GetIndexOffset(), -4);
    EXPECT_EQ(readText("V1.0CCalibrator 1 1 V1.0" + constants)->GetCalibMode(), 3);
    // A single number is a vector; what follows the last token of a version without correction data is not looked at.
    const auto compensated = std::dynamic_pointer_cast<ICalibrationConstantsFunctionalTemperatureCompensation>(
        readText("V1.0CCalibrator 13 1 V1.0CTOF2TemperatureCompensatedCalibrationConstants "
                 "V1.0CTOF2CalibrationConstants 1 1 0 1 0 0 0 0 2 3.5 V1.0VectorDouble 1 4.5 and more")
            ->GetFunctionalConstants());
    EXPECT_EQ(compensated->GetMeasuredTemperatures(), Doubles{3.5});
    EXPECT_EQ(compensated->GetCorrectionFactors(), Doubles{4.5});
    // Correction data on a line of their own.
    EXPECT_NE(readText("V3.0CCalibrator 4" + g_tail + "V1.0CLinearCalibrationConstants 0 1 1 2 0\n" + g_noGpx),
              nullptr);
}

TEST(CalibrationText, CutAtEveryTokenFailsInTheWordsOfItsPlace) {
    constexpr int firstConstant = 7;
    for (const auto& [transformator, text] : g_cases) {
        const bool isOneLine = text.find("CTOFCalibrationConstants") == std::string::npos;
        int token = 0;
        for (std::size_t end = 0; end < text.rfind("endCGPXData"); end = text.find(' ', end + 1)) {
            SCOPED_TRACE(text.substr(0, end));
            const std::string failure = failureOfReadingText(text.substr(0, end));
            if (token == 0)
                EXPECT_EQ(failure, g_class + "GetStringVersionNumberOfStringPrefix: Version id not supported.");
            else if (token < firstConstant)
                EXPECT_EQ(failure, g_headFailure);
            else
                EXPECT_TRUE(failure.find("prefix string ''.") != std::string::npos ||
                            failure == "runtime: vector deserialization" ||
                            failure.find("failed to create gpxTransformator") != std::string::npos)
                    << failure;
            if (token > firstConstant && end < text.find(" V1.0CGPXData")) {
                std::string broken = text;
                broken[end] = '\n';
                EXPECT_EQ(failureOfReadingText(broken).empty(), !isOneLine);
            }
            token += end == 0 || text[end + 1] != ' ';
        }
    }
}

TEST(CalibrationText, DamageIsReportedInItsWords) {
    const std::string vector =
        "V1.0CCalibrator 13 1 V1.0CTOF2TemperatureCompensatedCalibrationConstants V1.0CTOF2CalibrationConstants 1 1 0 "
        "1 0 0 0 0 ";
    const std::string ftmsText = "V1.0CCalibrator 3 1 V1.0CICRCalibrationConstants 0 0 1 0 1 ";
    const std::string ftmsFailure =
        "runtime: CalibrationTransformatorFactorySerialization::DeserializeFromStringFTMS: ";
    const std::string strategyFailure = "runtime: Calibration deserialization failed: unknown calibration strategy: ";
    const std::pair<std::string, std::string> cases[] = {
        {"V4.0CCalibrator 1 1", g_class + "GetStringVersionNumberOfStringPrefix: Version id not supported."},
        {"V1.0CCalibrator 1 2 V1.0CTOFCalibrationConstants 10 1 1 1 1 1", g_headFailure},
        {"V2.0CCalibrator 1 1 99999999999 0 0 0 ", g_headFailure},
        {"V1.0CCalibrator 9 1 V1.0CTOFCalibrationConstants", strategyFailure + "9"},
        {"V1.0CCalibrator -1 1 ", strategyFailure + "-1"},
        {"V1.0CCalibrator +-1 1 ", g_headFailure},
        {"V1.0CCalibrator 1 1 V1.0CPaladinCalibrationConstants 1",
         prefixFailure("DeserializeFromStringLinear", "V1.0CPaladinCalibrationConstants")},
        {"V1.0CCalibrator 12 1 V2.0CTOF2CalibrationConstants 1",
         prefixFailure("DeserializeFromStringTOF2", "V2.0CTOF2CalibrationConstants")},
        {"V1.0CCalibrator 1 1 V1.0CTOFCalibrationConstants 10 1x 1 1 1 1",
         prefixFailure("DeserializeFromStringLinear", "1x")},
        {ftmsText + "0", prefixFailure("DeserializeFromStringFTMS", "")},
        {ftmsText + "2 0 1 0", ftmsFailure + "mode 2 not supported."},
        {ftmsText + "3 0 1 0", ftmsFailure + "mode 3 or 6 not supported."},
        {ftmsText + "6", ftmsFailure + "mode 3 or 6 not supported."},
        {ftmsText + "7 0 1 0", ftmsFailure + "unknown FTMS operation mode: 7"},
        {vector + "4 1 1",
         "runtime: ICalibrationConstantsFunctionalTemperatureCompensation::compensationModeFromInt: No such "
         "compensation mode: 4"},
        {vector + "2 V1.0VectorDouble 2000000000 1 2 3", "runtime: vector deserialization"},
        {vector + "2 V1.0VectorDouble -1 1 2 3", "runtime: vector deserialization"},
        {vector + "2 V2.0VectorDouble 1 1", "runtime: vector deserialization"},
        {"V3.0CCalibrator 4" + g_tail + "V1.0CLinearCalibrationConstants 0 1 1 2 0 V1.0CGPXData Order one",
         g_noCorrection},
    };
    for (const auto& [text, failure] : cases)
        EXPECT_EQ(failureOfReadingText(text), failure) << text;
    const std::string writer = "argument: CalibrationTransformatorFactorySerialization::";
    EXPECT_EQ(failureOf([] { textOf(nullptr); }), writer + "SerializeToString: no transformator.");
    const auto law = linear(1, 2);
    law->SetFunctionalConstants(tof(0, 1, 0, 0, 1)->GetFunctionalConstants());
    EXPECT_EQ(failureOf([&] { textOf(law); }),
              writer + "SerializePraefixAndConstants: Constants do not offer serialization interface.");
}

TEST(CalibrationText, LosesWhatHasNoPlaceInIt) {
    CalibrationConstantsFunctionalTOF1TemperatureCompensation law;
    law.SetMeasuredTemperatures({25});
    const auto transformator = make(law, CalibrationConstantsPhysicalTOF());
    for (const auto& [offset, whole] : {std::pair(-2.6, -2), {2.6, 3}}) {
        transformator->SetIndexOffset(offset);
        const auto again = readText(textOf(transformator));
        EXPECT_EQ(again->GetFunctionalTypeCode(), 1);
        EXPECT_EQ(again->GetIndexOffset(), whole);
    }
    for (const double odd : {g_nan, HUGE_VAL, 5e-324, -0.0, 1.7976931348623157e308}) {
        const double again = readText(textOf(linear(1, odd)))->RawToMass(1);
        EXPECT_TRUE(again == odd + 1 || std::isnan(odd)) << odd;
    }
}

}  // namespace

}  // namespace kvan::calibration
