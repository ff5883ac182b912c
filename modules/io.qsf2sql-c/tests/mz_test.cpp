#include "road.h"

#include <cmath>

namespace road {
namespace {

/// The blob with a correction that is used on the masses 50 to 4000, and its coefficients.
Bytes corrected(Bytes calibration, const std::vector<double>& coefficients) {
    const double constants[] = {0.0, 0.0, 50.0, 4000.0};
    const std::uint16_t use = 1;
    const auto count = static_cast<std::uint16_t>(coefficients.size());
    const std::uint32_t offset = 40;
    const auto append = [&calibration](const void* bytes, std::size_t size) {
        const auto* const first = static_cast<const unsigned char*>(bytes);
        calibration.insert(calibration.end(), first, first + size);
    };
    calibration[2] = 1;
    append(constants, sizeof constants);
    append(&use, sizeof use);
    append(&count, sizeof count);
    append(&offset, sizeof offset);
    append(coefficients.data(), coefficients.size() * sizeof(double));
    return calibration;
}

class Mz : public Road {
protected:
    /// One spectrum with four profile points and two lines.
    void writeWith(const Bytes& calibration) const {
        write({{.profile = std::vector<std::uint32_t>{1, 2, 3, 4},
                .lines = LineData{.index = {{0.5, 2.0}}, .intensity = {{10, 20}}},
                .info = {.acquiredUpper = 3, .calibration = calibration}}});
    }

    void expectMasses(const Bytes& calibration, double (*massOfIndex)(double)) const {
        writeWith(calibration);
        const Storage storage(mainFile());
        ASSERT_TRUE(storage) << lastError();
        const std::vector<double> profile = storage.read<double>(id("ProfileMzId"));
        const std::vector<double> lines = storage.read<double>(id("LineMzId"));
        ASSERT_EQ(profile.size(), 4u);
        ASSERT_EQ(lines.size(), 2u);
        for (int index = 0; index < 4; ++index)
            EXPECT_NEAR(profile[static_cast<std::size_t>(index)], massOfIndex(index), 1e-12 * massOfIndex(index));
        EXPECT_NEAR(lines[0], massOfIndex(0.5), 1e-12 * massOfIndex(0.5));
        EXPECT_NEAR(lines[1], massOfIndex(2.0), 1e-12 * massOfIndex(2.0));
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
    const std::string notUnique = "gpx polynomial could not be inverted in a unique way";
    // Where the acquired range has no mass there is no cache.
    for (const std::vector<double>& coefficients : {std::vector<double>{5},
                                                    {0, 0, 0},
                                                    {std::nan(""), 1},
                                                    {0, -1},
                                                    {1e300, 1, 1e300},
                                                    std::vector<double>(5000, 1e300)}) {
        writeWith(corrected(straight, coefficients));
        EXPECT_FALSE(Storage(mainFile()));
        EXPECT_EQ(lastError(), notUnique);
    }
    // Holds at index 0, where the acquired range ends, and is off by more than the search is wide at the next ones.
    write({{.profile = std::vector<std::uint32_t>(10, 1),
            .lines = LineData{.index = {{1.0, 2.0}}},
            .info = {.calibration = corrected(straight, {0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -1e-30})}}});
    const Storage storage(mainFile());
    ASSERT_TRUE(storage) << lastError();
    EXPECT_EQ(storage.failureOf(id("LineMzId")), notUnique);
    EXPECT_EQ(storage.failureOf(id("ProfileMzId")),
              "Transformation failed, most likely due to bad calibration constants.");
    EXPECT_EQ(storage.read<std::uint32_t>(id("ProfileIntensityId")).size(), 10u) << "all else is served";

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
        write({{.profile = std::vector<std::uint32_t>(300000, 1), .info = {.calibration = calibration}}});
        std::vector<double> reference;
        for (const int threads : {1, 2, 5}) {
            qsf2sql_set_num_threads(threads);
            const Storage storage(mainFile());
            const auto masses = storage.read<double>(id("ProfileMzId"));
            if (reference.empty())
                reference = masses;
            EXPECT_EQ(masses.size(), 300000u);
            EXPECT_TRUE(masses == reference) << threads;
        }
    }
}

TEST_F(Mz, ABlockWithoutIndicesHasNoMzAndAsksForNoCalibration) {
    const auto locations = write({{.lines = LineData{.intensity = {{10, 20}}}}});
    const Storage storage(mainFile());
    const std::uint64_t mz = std::uint64_t{22} << 56 | locations[0].lines;
    double untouched = 42.0;
    EXPECT_EQ(storage.length(mz), 0);
    EXPECT_EQ(storage.readInto(mz, &untouched), 1);
    EXPECT_EQ(untouched, 42.0);
}

TEST_F(Mz, AProfileWithoutEntriesIsARangeThatEndsAheadOfItsStart) {
    write({{.profile = std::vector<std::uint32_t>{}, .info = {.calibration = calibrationBlob(4098, {0, 1})}}});
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
    const std::pair<const char*, std::string> cases[] = {
        {"UPDATE Spectra SET TransformatorId = 99", "Couldn't get transformator blob."},
        {"UPDATE Spectra SET TransformatorId = NULL",
         "bad lexical cast: source type value could not be interpreted as target"},
        {"UPDATE Spectra SET TransformatorId = 'one'",
         "bad lexical cast: source type value could not be interpreted as target"},
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
    // Holds at index 0, where the acquired range ends, and has no real solution beyond.
    write({{.profile = std::vector<std::uint32_t>(10, 1),
            .lines = LineData{.index = {{1.0, 2.0}}},
            .info = {.calibration = calibrationBlob(1, {0, 0.5, 0, 4e12, -1})}}});
    const Storage storage(mainFile());
    ASSERT_TRUE(storage) << lastError();
    EXPECT_EQ(storage.failureOf(id("LineMzId")),
              "complex valued solution in computation due to invalid calibration constants/value range");
    EXPECT_EQ(storage.failureOf(id("ProfileMzId")),
              "Transformation failed, most likely due to bad calibration constants.");
}

}  // namespace
}  // namespace road
