#include "archives.h"
#include "largest_allocation.h"

namespace archives {
namespace {

using namespace kvan::sample;

/// Archives with one record of note.
const struct {
    CalibratorArchive operator()(const ArchivedReferences& record) const { return {.references = record}; }
    CalibratorArchive operator()(const ArchivedStatus& record) const { return {.references = {{.stati = {record}}}}; }
    CalibratorArchive operator()(const ArchivedLockMasses& record) const { return {.lockMasses = record}; }
    CalibratorArchive operator()(const ArchivedLockMass& record) const { return {.lockMasses = {.spectra = {record}}}; }
    CalibratorArchive operator()(const ArchivedLockMassParams& record) const {
        return {.lockMasses = {.params = record}};
    }
    CalibratorArchive operator()(const ArchivedCalibrator& record) const {
        return {.references = {{.references = {{.calibrator = record}}}}};
    }
} with;

TEST(Archive, EveryVersionOfEveryRecordIsReadToItsEnd) {
    const ArchivedCalibrator both{.blob = line(7), .text = lineText("7")};
    const ArchivedCalibrator asText{.version = {0, 2}, .text = lineText("7")};
    const CalibratorArchive archives[] = {
        {},
        full(),
        {.version = {1, 0}},
        {.version = {1, 1}},
        {.version = {1, 0}, .manager = ArchivedManager{.version = {0, 5}, .calibrators = {line(1)}}},
        {.version = {1, 1}, .manager = ArchivedManager{.kind = 1, .calibrators = {line(1), {}, line(2)}}},
        {.version = {1, 1}, .manager = ArchivedManager{.kind = 77}},
        with(ArchivedReferences{.version = {0, 1}}),
        with(ArchivedReferences{.version = {0, 2}, .references = {{.calibrator = both}}}),
        with(asText),
        with(ArchivedCalibrator{.version = {1, 1}}),
        with(ArchivedStatus{.version = {1, 1}, .dataVersion = {0, 1}, .qualityVersion = {0, 1}, .calibrator = asText}),
        with(ArchivedStatus{.version = {1, 2}, .dataVersion = {0, 2}, .calibrator = both, .elements = 0}),
        with(ArchivedStatus{.dataVersion = {0, 3}, .calibrator = {.version = {7, 0}}}),
        with(ArchivedStatus{.calibrator = {.blob = {1, 2, 3}, .text = "not looked at"}}),
        with(ArchivedLockMasses{.version = {1, 0}, .spectra = {{.version = {1, 0}, .calibrator = both}, {}}}),
        with(ArchivedLockMass{.version = {1, 1}, .hasShortTag = true, .calibrator = both}),
        with(ArchivedLockMass{.version = {1, 1}, .calibrator = asText, .padding = {1, 2, 3}}),
        with(ArchivedLockMass{.version = {1, 2}, .calibrator = both, .trailingText = "the same as text"}),
        with(ArchivedLockMass{.calibrator = both, .padding = {0x1D, 0x27, 0xAB, 0xBF, 2, 0, 0, 0, 'x', 0}}),
        with(ArchivedLockMassParams{.version = {0, 1}, .massListVersion = {1, 0}, .masses = {1, 2}}),
        with(ArchivedLockMassParams{.version = {0, 2}}),
        with(ArchivedLockMassParams{.version = {0, 3}, .masses = {1}}),
    };
    for (std::size_t index = 0; index < std::size(archives); ++index)
        EXPECT_EQ(extract(archives[index]), "") << index;
}

TEST(Archive, BytesOfAnEmptyOne) {
    const Bytes expected = {2,    0,    0,    0,    0, 0, 0, 0, 43, 0, 0, 0,  // version, not looked at, length
                            0xCD, 0x70, 0xA0, 0xBF, 1, 0, 2, 0, 0,            // top record 1.2, no references
                            0xD7, 0x6F, 0xAF, 0xBF, 1, 0, 1, 0, 0,            // lock masses 1.1, no parameters
                            0x66, 0xD2, 0xA1, 0xBF, 0, 0, 0, 0,               // array of spectra
                            0xC1, 0x6C, 0xA3, 0xBF, 0, 0, 1, 0,               // stati 0.1
                            0x66, 0xD2, 0xA1, 0xBF, 0, 0, 0, 0,               // their array
                            1};                                               // lock mass in use
    EXPECT_EQ(archiveBytes({}), expected);
}

TEST(Archive, WhatIsRefusedAndWhy) {
    constexpr const char* untested = "Untested code path.";
    constexpr const char* newer = "CACException Unsupported VersionNumber 1.4";
    const ArchiveVersion next{1, 4};
    const std::pair<CalibratorArchive, const char*> cases[] = {
        {{.version = next}, newer},
        {{.version = {0, 9}}, "CACException Unsupported VersionNumber 0.9"},
        {{.version = {1, 0}, .manager = ArchivedManager{.version = {1, 2}}},
         "CACException Unsupported VersionNumber 1.2"},
        {with(ArchivedReferences{.version = next}), newer},
        {with(ArchivedReferences{.references = {{.version = next}}}), newer},
        {with(ArchivedReferences{.references = {{.version = {0, 1}}}}), untested},
        {with(ArchivedReferences{.references = {{.version = {0, 2}}}}), untested},
        {with(ArchivedCalibrator{.version = {0, 1}}), untested},
        {with(ArchivedCalibrator{.version = {0, 7}}), "Shouldn't happen."},
        {with(ArchivedCalibrator{.version = {0, 2}, .text = "V9"}),
         "kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::"
         "GetStringVersionNumberOfStringPrefix: Version id not supported."},
        {with(ArchivedCalibrator{.blob = {1, 0}}),
         "ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES"},
        {with(ArchivedStatus{.version = {0, 1}}), untested},
        {with(ArchivedStatus{.version = {0, 3}}), untested},
        {with(ArchivedStatus{.version = {1, 0}}), untested},
        {with(ArchivedStatus{.version = next}), newer},
        {with(ArchivedStatus{.dataVersion = next}), newer},
        {with(ArchivedStatus{.qualityVersion = next}), newer},
        {with(ArchivedStatus{.calibrator = {.version = {0, 1}}}), untested},
        {with(ArchivedLockMasses{.version = next}), newer},
        {with(ArchivedLockMass{.version = next}), newer},
        {with(ArchivedLockMassParams{.version = next}), newer},
        {with(ArchivedLockMassParams{.massListVersion = next}), newer},
    };
    for (const auto& [archive, text] : cases)
        EXPECT_EQ(extract(archive), text);

    CDataFileCalibrationOrganizer organizer;
    Bytes nested = payload({});
    nested[11] ^= 1;  // in the tag of the lock masses, after the top record's tag, version and flag
    EXPECT_EQ(
        extract(nested, organizer),
        "Found bfae6fd7x (<unknown number>) but expected bfaf6fd7x (CLockMassCalibrationMgr): Unexpected magic number");
    EXPECT_EQ(test::failureOf([] { CompareKeys({}, {}); }), "RZ: for trap analyses scan modi have to be considered.");
}

/// Of early archives, compensated references of the second generation with one temperature.
TEST(Archive, ReferencesOfOneTemperatureSpoilAnEarlyArchive) {
    const auto extracted = [](ArchiveVersion version, std::uint32_t polarity, const std::string& temperatures) {
        const std::string text =
            "V1.0CCalibrator 13 1 V1.0CTOF2TemperatureCompensatedCalibrationConstants V1.0CTOF2CalibrationConstants 10 "
            "0.5 8 2.5e11 0 0 0 0 2 V1.0VectorDouble " +
            temperatures + " V1.0VectorDouble 0 ";
        return extract(with(ArchivedReferences{
            .version = version,
            .references = {{.polarity = polarity, .calibrator = {.version = {0, 2}, .text = text}}}}));
    };
    EXPECT_EQ(extracted({0, 2}, 0, "1 25"),
              "CReferenceCalibrators::ExtractFromBlob: this AMI contains problematic information.");
    EXPECT_EQ(extracted({0, 3}, 0, "1 25"), "");
    EXPECT_EQ(extracted({0, 2}, 0, "2 25 26"), "");
    EXPECT_EQ(extracted({0, 2}, 2, "1 25"), "") << "was dropped before";
}

TEST(Archive, EndsAnywhereAndSaysSo) {
    const ArchivedLockMass withText{.version = {1, 2}, .calibrator = {{.blob = line(7)}}, .trailingText = "7"};
    for (const Bytes& whole : {payload(full()), payload(with(withText))})
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            CDataFileCalibrationOrganizer organizer;
            EXPECT_TRUE(extract(cut, organizer).ends_with(": Binary position out of bounds")) << size;
            TransformatorPtr calibrator;
            EXPECT_EQ(
                test::failureOf([&] { organizer.GetCalibrator(0, POLARITY_POSITIVE, CMSMSInfo::MS, calibrator); }),
                "No Calibrator.ami opened.");
        }
}

/// Whatever stands at whatever place: no count or length takes memory beyond the file's own size.
TEST(Archive, FalseClaimsTakeNoMemory) {
    const Bytes whole = payload(full());
    for (const std::uint32_t claim : {0xFFFFFFFFU, 0xFFFFFFF0U, 0x20000001U, 0x00FFFFFFU}) {
        for (std::size_t place = 0; place + sizeof claim <= whole.size(); ++place) {
            Bytes damaged = whole;
            std::memcpy(damaged.data() + place, &claim, sizeof claim);
            CDataFileCalibrationOrganizer organizer;
            LargestAllocation watch;
            extract(damaged, organizer);
            ASSERT_LE(watch.bytes(), 16 * whole.size()) << claim << " at " << place;
        }
    }
}

}  // namespace
}  // namespace archives
