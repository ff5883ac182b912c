#include <sample-analysis/sample_run.h>
#include <test-support/support.h>

#include <string>

#include <gtest/gtest.h>

namespace kvan::sample {
namespace {

/// The bytes of the three files of a run, one behind the other.
std::string bytesOfRun(const SampleRunParameters& parameters) {
    const test::TemporaryDirectory directory;
    writeSampleRun(directory, parameters);
    std::string bytes;
    for (const char* name : {"analysis.qsf", "analysis.qsf_idx", "analysis.qsf_xtr"})
        bytes += test::readFile(directory / name);
    return bytes;
}

/// FNV-1a, 64 bits.
std::uint64_t hashOf(const std::string& bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return hash;
}

TEST(SampleRun, BytesDependOnTheParametersAlone) {
    const SampleRunParameters parameters{
        .spectra = 60, .points = 5000, .profiles = Profiles::All, .polarities = Polarities::Both, .segments = 3};
    const std::string bytes = bytesOfRun(parameters);
    EXPECT_EQ(bytes, bytesOfRun(parameters));
    // The same on every machine and with every compiler; changes only with the run itself.
    EXPECT_EQ(hashOf(bytes), 15209119080149687743U);

    SampleRunParameters otherSeed = parameters;
    otherSeed.seed = 2;
    EXPECT_NE(bytes, bytesOfRun(otherSeed));
}

TEST(SampleRun, RunsOfAllShapesEnd) {
    for (auto calibration = CalibrationFamily::TofLinear; calibration <= CalibrationFamily::Psd;
         calibration = static_cast<CalibrationFamily>(static_cast<int>(calibration) + 1)) {
        for (const std::uint32_t spectra : {0U, 1U, 12U})
            EXPECT_FALSE(bytesOfRun({.spectra = spectra,
                                     .calibration = calibration,
                                     .points = 2,
                                     .profiles = Profiles::All,
                                     .floatProfiles = true,
                                     .maxLines = 0,
                                     .fragmentsPerSurvey = 0,
                                     .segments = 20})
                             .empty());
    }
    EXPECT_THROW(bytesOfRun({.points = 1}), std::invalid_argument);
    EXPECT_THROW(bytesOfRun({.mzLower = 500.0, .mzUpper = 500.0}), std::invalid_argument);
    EXPECT_THROW(bytesOfRun({.segments = 0}), std::invalid_argument);
}

}  // namespace
}  // namespace kvan::sample
