#include "blobs.h"

#include <calibration-core/interfaces/CalibrationBlobDescription.h>

namespace kvan::calibration {

namespace {

const std::string g_badFlag = g_reader + "FromBlob: Invalid serialization: transformator type unknown.";

// Doubles: 4024.. 10.0, 3FE0.. 0.5, 4020.. 8.0, 424D1A94A2000000 2.5e11, BFC0.. -0.125, 3FF0.. 1.0, 4000.. 2.0.
const Bytes g_tof =
    test::fromHex("0100 0000 0000000000002440 000000000000E03F 0000000000002040 000000A2941A4D42 000000000000C0BF");
const Bytes g_tofReference = test::fromHex(
    "0400 0000 0000000000002440 000000000000E03F 0000000000002040 000000A2941A4D42 0000000000000000 02 01 03 00");
const Bytes g_ionTrap =
    test::fromHex("0110 0000 000000000000F03F 0000000000000040 000000000000E03F 0000000000002040 0000000000002440");
const Bytes g_linear = test::fromHex("0210 0000 000000000000F03F 0000000000000040");

/// An extension of a reference with two temperatures and two factors.
const Bytes g_refExtension = packed(u16{49068}, u16{0}, u32{1}, u32{2}, u32{0}, u32{0}, u32{0}) +
                             packed(u16{53153}, u16{0}, u32{60}, u32{0}, u32{0}, u32{28}, u32{44}, u16{2}, u16{2}) +
                             packed(25.0, 26.0, 80.0, 90.0);

const Bytes g_tofCompensated = head(3) + g_tofBlock + packed(1, 80.0);
const Bytes g_tofCompensatedReference = head(2) + g_tofBlock + packed(0) + g_key + packed(25.0, 80.0);
const Bytes g_tofExtended = head(1) + g_tofBlock + g_extension;
const Bytes g_tofReferenceExtended = head(4) + g_tofBlock + g_key + g_refExtension;
const Bytes g_tof2 = head(9) + g_tof2Block;
const Bytes g_tof2Reference = head(11) + g_tof2Block + g_key;
const Bytes g_tof2Compensated = head(10) + g_tof2Block + packed(255, u32{68}, u32{2}, 80.0, 90.0);
const Bytes g_tof2CompensatedReference =
    head(12) + g_tof2Block + g_key + packed(0, 1, u32{80}, u32{96}, u16{2}, u16{1}, 25.0, 26.0, 80.0);
const Bytes g_ftms = head(257) + packed(4, 0.0, -24.0, 1024.0, 0, 1, 5, 240.0, 160.0);
const Bytes g_ftmsQuadratic = head(257) + packed(5, -64.0, -24.0, 1024.0, 1, 0, 5, 240.0, 160.0);

const Bytes g_blobs[] = {
    g_tof,     g_tofReference,  g_tofCompensated,  g_tofCompensatedReference,  g_tofExtended, g_tofReferenceExtended,
    g_tof2,    g_tof2Reference, g_tof2Compensated, g_tof2CompensatedReference, g_ftms,        g_ftmsQuadratic,
    g_ionTrap, g_linear};

std::shared_ptr<ICalibrationConstantsFunctionalTemperatureCompensation> compensationOf(
    const TransformatorPtr& transformator) {
    return std::dynamic_pointer_cast<ICalibrationConstantsFunctionalTemperatureCompensation>(
        transformator->GetFunctionalConstants());
}

TEST(CalibrationBlob, HoldsTheConstantsAtTheirOffsets) {
    EXPECT_TRUE(read(g_tof)->IsEqual(*tof(8, 2.5e11, -0.125, 10, 0.5)));
    EXPECT_TRUE(read(g_tofReference)->IsEqual(*tof(8, 2.5e11, 0, 10, 0.5)));
    EXPECT_TRUE(read(g_ionTrap)->IsEqual(*paladin(1, 2, 0.5, 10, 8)));
    EXPECT_TRUE(read(g_linear)->IsEqual(*linear(1, 2)));
    for (const Bytes* blob : {&g_tofCompensated, &g_tofCompensatedReference, &g_tofExtended, &g_tofReferenceExtended})
        EXPECT_TRUE(read(*blob)->IsEqual(*tof(8, 2.5e11, -0.125, 10, 0.5)));
    for (const Bytes* blob : {&g_tof2, &g_tof2Reference, &g_tof2Compensated, &g_tof2CompensatedReference})
        EXPECT_TRUE(read(*blob)->IsEqual(*tof2(8, 2.5e11, -0.125, 0.5, 4, 10, 0.5)));
    EXPECT_EQ(read(g_ftms)->IndexToRaw(1), 160 - 32);
    EXPECT_EQ(read(g_ftms)->MassToRaw(4), 280);
    EXPECT_EQ(read(g_ftmsQuadratic)->IndexToRaw(1), 400 - 32);
    EXPECT_EQ(read(g_ftmsQuadratic)->MassToRaw(4), 256 - 24 - 4);

    for (const Bytes* blob : {&g_tofReference, &g_tofCompensatedReference, &g_tofReferenceExtended, &g_tof2Reference,
                              &g_tof2CompensatedReference}) {
        const auto mode = read(*blob)->GetMeasurementModeInfo();
        EXPECT_EQ(Indices({mode->GetAcquisitionMode(), mode->GetPolarity(), mode->GetMSMSLevel(), mode->GetScanMode()}),
                  Indices({2, 1, 3, 0}));
    }
    EXPECT_EQ(read(g_tof)->GetMeasurementModeInfo(), nullptr);
}

TEST(CalibrationBlob, HoldsTheTemperatureCompensation) {
    // Code of the law, mode of the compensation, temperatures, factors.
    const std::tuple<const Bytes*, int, int, Doubles, Doubles> cases[] = {
        {&g_tofCompensated, 9, 1, {80}, {80}},
        {&g_tofCompensatedReference, 9, 2, {25}, {80}},
        {&g_tofExtended, 9, 3, {25.5, 26.5}, {25.5, 26.5}},
        {&g_tofReferenceExtended, 9, 2, {25, 26}, {80, 90}},
        {&g_tof2Compensated, 13, 0, {80, 90}, {80, 90}},
        {&g_tof2CompensatedReference, 13, 1, {25, 26}, {80}},
    };
    for (const auto& [blob, code, mode, temperatures, factors] : cases) {
        SCOPED_TRACE(blob->at(0));
        const auto transformator = read(*blob);
        const auto compensation = compensationOf(transformator);
        EXPECT_EQ(transformator->GetFunctionalTypeCode(), code);
        EXPECT_EQ(compensation->GetCompensationMode(), mode);
        EXPECT_EQ(compensation->GetMeasuredTemperatures(), temperatures);
        EXPECT_EQ(compensation->GetCorrectionFactors(), factors);
    }
    const auto empty = read(head(12) + g_tof2Block + g_key + packed(0, 1, u32{99}, u32{99}, u16{0}, u16{0}));
    EXPECT_EQ(empty->GetFunctionalTypeCode(), 12);
    EXPECT_EQ(empty->GetMeasurementModeInfo()->GetPolarity(), 1);
}

TEST(CalibrationBlob, WritesTheBytesThatItReads) {
    for (const Bytes& blob : g_blobs)
        EXPECT_EQ(written(read(blob)), blob);
    EXPECT_EQ(written(nullptr), test::fromHex("FF000000"));
}

TEST(CalibrationBlob, IsDescribedByItsHeadRecords) {
    using enum CalibrationFamily;
    using Degree = CalibrationBlobDescription::Degree;
    const struct {
        Bytes blob;
        std::optional<CalibrationBlobDescription> described;
    } rows[] = {
        {g_tofReference, {{Tof, "time of flight", Degree::Linear, false}}},
        {g_tofExtended, {{CompensatedTof, "time of flight, temperature-compensated", Degree::Quadratic, false}}},
        {flagged(g_tof) + Bytes(40), {{Tof, "time of flight", Degree::Quadratic, true}}},
        {g_ftms, {{Ftms, "Fourier transform", Degree::Linear, false}}},
        {Bytes(3), {}},
        {Bytes(g_tof.data(), g_tof.data() + 43), {}},
        {head(255), {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(describeBlob(row.blob), row.described) << row.blob.size();
}

/// Where a blob of that type may end before its extension.
std::size_t blockEnd(const Bytes& blob) {
    return blob[1] != 0 ? 0 : blob[0] == 1 ? 44 : blob[0] == 4 ? 48 : 0;
}

TEST(CalibrationBlob, CutAnywhereIsAReadError) {
    EXPECT_EQ(read({}), nullptr);
    for (const Bytes& blob : g_blobs)
        expectCutFails(blob, blockEnd(blob));
}

TEST(CalibrationBlob, ArraysThatTheBlobCannotHoldAreAReadError) {
    const auto arrays = [](u32 offset, u32 count) {
        return head(10) + g_tof2Block + packed(0, offset, count, 80.0, 90.0);
    };
    const std::pair<u32, u32> beyond[] = {
        {68, 3}, {69, 2}, {0xFFFFFFFF, 1}, {68, 0xFFFFFFFF}, {0xFFFFFFF8, 0xFFFFFFFF}};
    for (const auto& [offset, count] : beyond)
        EXPECT_EQ(failureOfReading(arrays(offset, count)), g_cut) << count << " at " << offset;
    // Any place inside the blob is good.
    EXPECT_EQ(compensationOf(read(head(10) + g_tof2Block + packed(0, u32{16}, u32{2})))->GetCorrectionFactors(),
              Doubles({8, 2.5e11}));
}

TEST(CalibrationBlob, ExtensionsAreOneInfoAndOneBlock) {
    const auto changed = [](const Bytes& block, Bytes extension, std::size_t offset, unsigned char value) {
        extension[offset] = value;
        return failureOfReading(block + extension);
    };
    const Bytes plain = head(1) + g_tofBlock;
    const Bytes reference = head(4) + g_tofBlock + g_key;
    const char* const newer = "Extension: Invalid serialization: data invalid. Was data written with newer software?";
    const std::pair<std::string, std::string> cases[] = {
        {changed(plain, g_extension, 0, 0xAD), g_noExtension},
        {changed(reference, g_refExtension, 0, 0xAD),
         g_reader + "RefExtension: invalid serialization: id unknown: Should be CALIB_EXTENSION_BLOCK_INFO_MAGIC "
                    "(49068) but is 49069."},
        {changed(plain, g_extension, 8, 4),
         "runtime: ICalibrationConstantsFunctionalTemperatureCompensation::compensationModeFromInt: No such "
         "compensation mode: 4"},
        {changed(plain, g_extension, 24, 0xA1),
         "runtime: VerifyExtensionInfoHeader(const CALIB_EXTENSION_BLOCK_INFO& header): Magic number is not "
         "TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC. Expected 53152 but m_Data.stHeader.usMagicNumber = 53153"},
        {changed(reference, g_refExtension, 24, 0xA0),
         "runtime: Read(FileAccessPolicy& FileAccess): Magic number is not TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC. "
         "Expected 53153 but m_Data.stHeader.usMagicNumber = 53152"},
        {changed(plain, g_extension, 28, 35), g_reader + newer},
        {changed(plain, g_extension, 28, 37), g_cut},
        {changed(reference, g_refExtension, 28, 0), g_reader + "Ref" + newer},
        {changed(plain, g_extension, 40, 3), g_cut},
        {changed(plain, g_extension, 36, 21), g_cut},
        {failureOfReading(plain + g_extension + g_extension), g_reader + newer},
        {failureOfReading(g_tofCompensated + g_extension), "runtime: Already contains temp-comp info."},
        {failureOfReading(g_tof2 + g_extension), "runtime: Non-supported strategy."},
        {failureOfReading(g_tof2Reference + g_refExtension), "runtime: Non-supported strategy."},
        {failureOfReading(g_ionTrap + g_extension), "runtime: Non-supported strategy."},
        {changed(plain, g_extension, 4, 7), ""},  // the identifier is not looked at
    };
    for (const auto& [failure, text] : cases)
        EXPECT_EQ(failure, text);
}

TEST(CalibrationBlob, FtmsModesAreCheckedByTheFactory) {
    const auto mode = [](int value) {
        return failureOfReading(head(257) + packed(value, 0.0, 0.0, 1.0, 0, 0, 5, 0.0, 1.0));
    };
    for (const int good : {0, 1, 4, 5})
        EXPECT_EQ(mode(good), "");
    EXPECT_EQ(mode(2), g_ofFactory + "createConstantsFunctionalIcr: mode 2 not supported [QX]");
    EXPECT_EQ(mode(3), g_ofFactory + "createTransformatorIcr: mode 3 and 6 not supported [QX]");
    EXPECT_EQ(mode(6), g_ofFactory + "createTransformatorIcr: mode 3 and 6 not supported [QX]");
    EXPECT_EQ(mode(7), "argument: unknown icr mode in serialization");
    // Written all the same, once it is in force.
    const auto transformator = read(g_ftmsQuadratic);
    transformator->SetCalibMode(3);
    EXPECT_EQ(written(transformator)[4], 3);
    transformator->SetFunctionalConstants(read(g_tof)->GetFunctionalConstants());
    EXPECT_EQ(failureOf([&] { written(transformator); }),
              "argument: CCOConversionUtil::MapCCO2QSF(FTMSCalibrationBlock): constants of GetFunctionalConstants are "
              "not of type ICalibrationConstantsFunctionalFTMS.");
    const auto linearLaw = read(g_ftms);
    linearLaw->SetFunctionalConstants(read(g_linear)->GetFunctionalConstants());
    EXPECT_EQ(failureOf([&] { written(linearLaw); }),
              "argument: CalibrationTransformatorFTMS04::SerializeToBlob: expected functional constants to be of type "
              "ICalibrationConstantsFunctionalFTMS04.");
}

TEST(CalibrationBlob, ATypeOfNoFamilyIsEmptyWhateverFollows) {
    for (const char* blob : {"FF000000", "05000000", "00000000", "0D000100", "0010FFFF 01", "FFFFFFFF 0102030405"})
        EXPECT_EQ(read(test::fromHex(blob)), nullptr) << blob;
    EXPECT_EQ(failureOfReading(test::fromHex("FF0000")), g_cut);
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
    EXPECT_EQ(failureOfReading(withFlag(g_ionTrap, 1, 39)), g_cut);
    EXPECT_EQ(failureOfReading(withFlag(g_tofReference, 0, 1)), g_cut);
}

TEST(CalibrationBlob, RefusesToWriteTheOtherForm) {
    Bytes blob;
    const auto reference = read(g_tofReference);
    EXPECT_EQ(failureOf([&] { g_serialization.SerializeToBlob(reference, blob); }),
              "logic: invalid serialization: a reference transformator is serialized as a normal one");
    EXPECT_EQ(failureOf([&] { g_serialization.SerializeReferenceToBlob(read(g_tof), blob); }),
              "logic: invalid serialization: a normal transformator is serialized as a reference one");
    const auto trap = read(g_ionTrap);
    trap->SetMeasurementModeInfo(reference->GetMeasurementModeInfo());
    EXPECT_EQ(failureOf([&] { g_serialization.SerializeReferenceToBlob(trap, blob); }),
              "argument: invalid serialization: the family has no reference form");
}

TEST(CalibrationBlob, CompensatedConstantsChooseTheBlock) {
    const std::string noTemperatures = "runtime: Invalid reference calibrator: no temperatures";
    const std::string noFactors = "runtime: Invalid reference calibrator: no correction factors";
    const std::tuple<const Bytes&, Doubles, Doubles, std::string> cases[] = {
        {g_tofCompensated, {}, {}, "1"},
        {g_tofCompensated, {25, 26}, {80}, "3"},
        {g_tofCompensated, {}, {80, 90}, "1 extended"},
        {g_tofCompensatedReference, {}, {}, "4"},
        {g_tofCompensatedReference, {25}, {80}, "2"},
        {g_tofCompensatedReference, {25}, {80, 90}, "4 extended"},
        {g_tofCompensatedReference, {}, {80}, noTemperatures},
        {g_tofCompensatedReference, {25, 26}, {}, noFactors},
        {g_tof2CompensatedReference, {}, {80}, noTemperatures},
        {g_tof2CompensatedReference, {25}, {}, noFactors},
    };
    for (const auto& [blob, temperatures, factors, expected] : cases) {
        const auto transformator = read(blob);
        const auto functional = transformator->GetFunctionalConstants();
        auto& compensation = dynamic_cast<ICalibrationConstantsFunctionalTemperatureCompensation&>(*functional);
        compensation.SetMeasuredTemperatures(temperatures);
        compensation.SetCorrectionFactors(factors);
        transformator->SetFunctionalConstants(functional);
        Bytes bytes;
        const std::string failure = failureOf([&] { bytes = written(transformator); });
        EXPECT_EQ(bytes.empty() ? failure : std::to_string(bytes[0]) + (bytes.size() > 76 ? " extended" : ""),
                  expected);
    }
}

}  // namespace

}  // namespace kvan::calibration
