#include "road.h"

#include <sample-analysis/archive_writer.h>

namespace road {
namespace {

using sample::CalibratorArchive;

/// A straight line that gives m/z `c0` at index 0.
Bytes line(double c0) {
    return calibrationBlob(4098, {c0, 1});
}

class CalibratorArchiveRoad : public Road {
protected:
    /// Three spectra, the last of negative polarity, each with one line at index 4 and a calibration of its own.
    CalibratorArchiveRoad() {
        std::vector<SpectrumData> spectra(3, {.lines = LineData{.index = {{4}}, .intensity = {{10}}},
                                              .info = {.acquiredUpper = 9, .calibration = line(0)}});
        spectra[2].info.polarity = 1;
        write(spectra);
    }

    /// m/z of the line of each spectrum.
    std::vector<double> masses(int rawCalibration = 0) const {
        const Storage storage(mainFile(), rawCalibration);
        std::vector<double> values;
        for (int spectrum = 1; spectrum <= 3; ++spectrum)
            values.push_back(storage.read<double>(id("LineMzId", spectrum)).at(0));
        return values;
    }

    std::string failureOfOpening() const {
        const Storage storage(mainFile(), 0);
        EXPECT_FALSE(storage);
        return lastError();
    }

    std::string failureOfReading(int spectrum) const {
        const Storage storage(mainFile(), 0);
        const std::string failure = storage.failureOf(id("LineMzId", spectrum));
        EXPECT_EQ(storage.read<double>(id("LineIntensityId", spectrum)).at(0), 10) << "the storage stays usable";
        return failure;
    }

    fs::path archiveFile() const { return m_directory / sample::g_archiveName; }

    const CalibratorArchive m_archive{
        .references = {{.references = {{.polarity = 2, .calibrator = {.blob = line(900)}},
                                       {.polarity = 0, .msmsType = 1, .calibrator = {.blob = line(800)}},
                                       {.polarity = 0, .calibrator = {.blob = line(100)}}}}},
        .lockMasses = {.spectra = {{.calibrator = {{.blob = line(10)}}}, {}, {.calibrator = {{.blob = line(30)}}}}}};
};

TEST_F(CalibratorArchiveRoad, LockMassReferenceOrItsOwn) {
    using Masses = std::vector<double>;
    EXPECT_EQ(masses(), (Masses{4, 4, 4}));
    sample::writeArchive(m_directory, m_archive);
    EXPECT_EQ(masses(), (Masses{14, 104, 34}));
    EXPECT_EQ(masses(-1), (Masses{4, 4, 4})) << "raw calibration asked for";

    CalibratorArchive archive = m_archive;
    archive.useLockMass = false;
    sample::writeArchive(m_directory, archive);
    EXPECT_EQ(masses(), (Masses{104, 104, 4}));

    archive.lockMasses.spectra.pop_back();
    sample::writeArchive(m_directory, archive);
    EXPECT_EQ(failureOfReading(3), "Spectrum number out of range.");
    archive.fileVersion = 3;
    sample::writeArchive(m_directory, archive);
    EXPECT_EQ(failureOfReading(1), "No Calibrator.ami opened.");
}

TEST_F(CalibratorArchiveRoad, ABrokenArchiveIsNamedAtTheOpen) {
    const std::string expected = "Couldn't open AMI file " + archiveFile().string();
    Bytes bytes = sample::archiveBytes(m_archive);
    bytes.pop_back();
    kvan::test::writeFile(archiveFile(), bytes);
    EXPECT_EQ(failureOfOpening(), expected);
    EXPECT_EQ(masses(1), (std::vector<double>{4, 4, 4})) << "not looked at";
    fs::remove(archiveFile());
    fs::create_directory(archiveFile());
    EXPECT_EQ(failureOfOpening(), expected);
}

}  // namespace
}  // namespace road
