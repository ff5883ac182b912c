#include "road.h"

namespace road {
namespace {

/// The blob with a correction that is used on the masses 50 to 4000, and its coefficients.
Bytes corrected(Bytes calibration, const Doubles& coefficients) {
    // Both are a head of 4 bytes and doubles; the fifth double is use (2 bytes), count (2) and offset of the others.
    Doubles record{0.0, 0.0, 50.0, 4000.0,
                   std::bit_cast<double>(1 | coefficients.size() << 16 | std::uint64_t{40} << 32)};
    record.insert(record.end(), coefficients.begin(), coefficients.end());
    const Bytes correction = calibrationBlob(0, record);
    calibration[2] = 1;
    calibration.insert(calibration.end(), correction.begin() + 4, correction.end());
    return calibration;
}

const std::string g_notUnique = "gpx polynomial could not be inverted in a unique way";

class Mz : public Road {
protected:
    /// One spectrum with four profile points and two lines.
    void writeWith(const Bytes& calibration) const {
        write({{.profile = Counts{1, 2, 3, 4},
                .lines = LineData{.index = {{0.5, 2.0}}, .intensity = {{10, 20}}},
                .info = {.acquiredUpper = 3, .calibration = calibration}}});
    }

    void expectMasses(const Bytes& calibration, double (*massOfIndex)(double)) const {
        writeWith(calibration);
        const Storage storage(mainFile());
        ASSERT_TRUE(storage) << lastError();
        const Doubles lines = storage.read<double>(id("LineMzId"));
        Doubles masses = storage.read<double>(id("ProfileMzId"));
        masses.insert(masses.end(), lines.begin(), lines.end());
        const Doubles indices{0, 1, 2, 3, 0.5, 2};
        ASSERT_EQ(masses.size(), indices.size());
        for (std::size_t at = 0; at < indices.size(); ++at)
            EXPECT_NEAR(masses[at], massOfIndex(indices[at]), 1e-12 * masses[at]) << indices[at];
        EXPECT_EQ(storage.read<float>(id("LineMzId"))[0], static_cast<float>(lines[0]));
        EXPECT_EQ(storage.read<std::uint32_t>(id("LineMzId"))[1], static_cast<std::uint32_t>(lines[1]));
    }
};

TEST_F(Mz, EveryLineAndPointByItsLawAndItsCorrection) {
    // Time of flight: delay, base, c0, c1, c2. c1 = 4e12 makes the factor under the root 0.25.
    const Bytes tof = calibrationBlob(1, {20, 0.5, 1, 4e12, 0});
    expectMasses(tof, [](double i) { return std::pow(i * 0.5 + 20 - 1, 2) / 0.25; });
    // Searched: apparent = 1.25 m + 10.
    expectMasses(corrected(tof, {10, 1.25}),
                 [](double i) { return (std::pow(i * 0.5 + 20 - 1, 2) / 0.25 - 10) / 1.25; });
}

TEST_F(Mz, ACorrectionThatIsDamagedIsNamedAndEnds) {
    const Bytes straight = calibrationBlob(4098, {100, 450});
    // Where the acquired range has no mass there is no cache.
    for (const Doubles& coefficients :
         {Doubles{5}, {0, 0, 0}, {kvan::test::g_nan, 1}, {0, -1}, {1e300, 1, 1e300}, Doubles(5000, 1e300)}) {
        writeWith(corrected(straight, coefficients));
        EXPECT_FALSE(Storage(mainFile()));
        EXPECT_EQ(lastError(), g_notUnique);
    }
    Bytes cut = corrected(straight, {0, 1});
    cut.pop_back();
    writeWith(cut);
    EXPECT_EQ(Storage(mainFile()).failureOf(id("LineMzId")),
              "ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES");
}

TEST_F(Mz, ReadsDoNotDependOnTheNumberOfThreads) {
    const Bytes tof = calibrationBlob(1, {25000.0, 0.2, 12.5, 500.0, 1e-3});
    for (const Bytes& calibration :
         {tof, corrected(tof, {1e-3, 1 - 4e-6, 9e-9, -4e-12}), corrected(tof, {0, 1, 1e-5})}) {
        write({{.profile = Counts(300000, 1), .info = {.calibration = calibration}}});
        std::set<Doubles> results;
        for (const int threads : {1, 2, 5}) {
            qsf2sql_set_num_threads(threads);
            results.insert(Storage(mainFile()).read<double>(id("ProfileMzId")));
        }
        EXPECT_EQ(results.size(), 1u);
        EXPECT_EQ(results.begin()->size(), 300000u);
    }
}

TEST_F(Mz, ABlockWithoutIndicesHasNoMzAndAsksForNoCalibration) {
    const std::uint64_t mz = arrayId(22, write({{.lines = LineData{.intensity = {{10, 20}}}}})[0].lines);
    const Storage storage(mainFile());
    double untouched = 42.0;
    EXPECT_EQ(storage.length(mz), 0);
    EXPECT_EQ(storage.readInto(mz, &untouched), 1);
    EXPECT_EQ(untouched, 42.0);
}

TEST_F(Mz, AProfileWithoutEntriesIsARangeThatEndsBeforeItsStart) {
    write({{.profile = Counts{}, .info = {.calibration = calibrationBlob(4098, {0, 1})}}});
    const Storage storage(mainFile());
    EXPECT_EQ(storage.length(id("ProfileMzId")), 0);
    EXPECT_EQ(storage.failureOf(id("ProfileMzId")),
              "Kvan::CCO::Functors::RangeTransformation(TTransformationFunctor transFunctor, boost::int32_t first, "
              "boost::int32_t last, TDest & dest): invalid transformation: range invalid: last < first with last = -1 "
              "and first = 0");
}

TEST_F(Mz, WhatIsMissingInTheCacheIsNamed) {
    writeWith(calibrationBlob(4098, {0, 1}));
    ASSERT_TRUE(Storage(mainFile()));
    const std::uint64_t mz = id("LineMzId");
    const std::string lookup = "getTransformatorForSpectrum( LineMzId = " + std::to_string(mz) + " ) failed";
    const std::string noNumber = "bad lexical cast: source type value could not be interpreted as target";
    const std::pair<const char*, std::string> cases[] = {
        {"UPDATE Spectra SET TransformatorId = 99", "Couldn't get transformator blob."},
        {"UPDATE Spectra SET TransformatorId = NULL", noNumber},
        {"UPDATE Spectra SET TransformatorId = 'one'", noNumber},
        {"UPDATE Spectra SET TransformatorId = 1; UPDATE Transformators SET Blob = NULL",
         "Spectrum has no transformator."},
        {"UPDATE Transformators SET Blob = x'FF000000'", "Spectrum has no transformator."},
        {"UPDATE Transformators SET Blob = x'0100'",
         "ReadAndThrow: fileAccess.Read(pBuffer, Bytes) is false: CTQCBaseException::READ_NUMBER_OF_BYTES"},
        {"UPDATE Spectra SET AcquisitionKey = NULL", lookup},
        {"DELETE FROM Spectra", lookup},
    };
    const Storage storage(mainFile());
    for (const auto& [change, text] : cases) {
        sql(change);
        EXPECT_EQ(storage.failureOf(mz), text) << change;
    }
    EXPECT_EQ(storage.length(mz), 2) << "the handle stays usable";
}

TEST_F(Mz, ALawThatFailsGivesItsWords) {
    // Both hold at index 0, where the acquired range ends, and fail beyond: one is off by more than the search is wide.
    const std::pair<Bytes, std::string> cases[] = {
        {corrected(calibrationBlob(4098, {100, 450}), {0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -1e-30}), g_notUnique},
        {calibrationBlob(1, {0, 0.5, 0, 4e12, -1}),
         "complex valued solution in computation due to invalid calibration constants/value range"},
    };
    for (const auto& [calibration, text] : cases) {
        write({{.profile = Counts(10, 1), .lines = LineData{.index = {{1, 2}}}, .info = {.calibration = calibration}}});
        const Storage storage(mainFile());
        ASSERT_TRUE(storage) << lastError();
        EXPECT_EQ(storage.failureOf(id("LineMzId")), text);
        EXPECT_EQ(storage.failureOf(id("ProfileMzId")),
                  "Transformation failed, most likely due to bad calibration constants.");
        EXPECT_EQ(storage.read<std::uint32_t>(id("ProfileIntensityId")).size(), 10u) << "all else is served";
    }
}

}  // namespace
}  // namespace road
