#include "archives.h"
#include "lib/reference_merge.h"

#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibrator-ami-reader/calibrator_ami_reader.h>

#include <sys/stat.h>

namespace archives {
namespace {

namespace fs = boost::filesystem;
using Factory = kvan::calibration::Transformation::CalibrationTransformatorFactory;

const auto& g_factory = *Factory::instance();
constexpr double g_nothing = -1.0;
const char* const g_beyond = "Spectrum number out of range.";

/// Mass at index 4 after the archive was asked, `g_nothing` if it had nothing.
double massAtFour(const CDataFileCalibrationOrganizer& organizer, std::uint64_t spectrum, std::uint32_t polarity,
                  TransformatorPtr calibrator) {
    const TransformatorPtr before = calibrator;
    if (organizer.GetCalibrator(spectrum, EPolarity{polarity}, CMSMSInfo::MS, calibrator))
        return calibrator->DIndexToMass(4);
    EXPECT_EQ(calibrator, before);
    return g_nothing;
}

CDataFileCalibrationOrganizer read(const CalibratorArchive& archive) {
    CDataFileCalibrationOrganizer organizer;
    EXPECT_EQ(extract(payload(archive), organizer), "");
    return organizer;
}

TEST(CalibratorOfASpectrum, LockMassFirstThenTheReferenceOfItsPolarity) {
    CalibratorArchive archive = full();
    archive.references->references.push_back({.polarity = 2, .calibrator = {.blob = line(300)}});
    archive.references->references.push_back({.polarity = 0, .calibrator = {.blob = line(400)}});
    archive.references->references.insert(archive.references->references.begin(),
                                          {.polarity = 0, .msmsType = 1, .calibrator = {.blob = line(500)}});
    archive.references->references.insert(archive.references->references.begin(), {.calibrator = {.version = {1, 1}}});
    const TransformatorPtr own = DeserializeBlob(line(1));
    const auto organizer = read(archive);
    EXPECT_EQ(massAtFour(organizer, 0, 0, own), 14);
    EXPECT_EQ(massAtFour(organizer, 2, 1, nullptr), 16);
    EXPECT_EQ(massAtFour(organizer, 1, 0, own), 104) << "a spectrum without lock mass; the first of its type counts";
    EXPECT_EQ(massAtFour(organizer, 1, 1, own), 204);
    EXPECT_EQ(massAtFour(organizer, 1, 2, own), g_nothing);
    EXPECT_EQ(massAtFour(organizer, 1, 0, nullptr), g_nothing);
    for (const std::uint64_t beyond : {std::uint64_t{3}, std::uint64_t{1} << 32, ~std::uint64_t{0}})
        EXPECT_EQ(test::failureOf([&] { massAtFour(organizer, beyond, 0, own); }), g_beyond);

    archive.useLockMass = false;
    EXPECT_EQ(massAtFour(read(archive), 0, 0, own), 104);
    EXPECT_EQ(test::failureOf([&] { massAtFour(read(archive), 3, 0, own); }), g_beyond)
        << "a short list fails also when unused";
    archive.lockMasses.spectra.clear();
    EXPECT_EQ(massAtFour(read(archive), 3, 0, own), 104);
    archive.references.reset();
    EXPECT_EQ(massAtFour(read(archive), 3, 0, own), g_nothing);
}

/// Constants of time of flight: delay, base, c0 to c4. At index 4 the axis of `tof(...)` stands at 22; c1 = 4e12 makes
/// the factor C1 under the root 0.25.
Bytes tof(double c0, double c1, double c2, double delay = 20) {
    return kvan::test::calibrationBlob(1, {delay, 0.5, c0, c1, c2});
}

Bytes tof2(double c0, double c1, double c2, double c3, double c4, double delay = 20) {
    return kvan::test::calibrationBlob(9, {delay, 0.5, c0, c1, c2, c3, c4});
}

/// A block of doubles with an integer and one more double after it: compensation code 0, and the temperature.
Bytes compensatedTof(double c0, double c1, double c2, double temperature) {
    Bytes bytes = tof(c0, c1, c2);
    bytes[0] = 3;
    bytes.resize(56);
    std::memcpy(bytes.data() + 48, &temperature, 8);
    return bytes;
}

/// The reference form of the same: code, key, temperature and factor in parts per million a degree.
Bytes compensatedTofReference(double c0, double c1, double c2, double temperature, double factor) {
    Bytes bytes = tof(c0, c1, c2, 555);
    bytes[0] = 2;
    bytes.resize(68);
    std::memcpy(bytes.data() + 52, &temperature, 8);
    std::memcpy(bytes.data() + 60, &factor, 8);
    return bytes;
}

TEST(CalibratorOfASpectrum, TheLawIsTheReferencesAndTheAxisItsOwn) {
    // Five degrees at 2e5 ppm make k = 2, so that C1 = 0.25 / 2 and c2 = 1 / 2: 0.5 m + sqrt(0.125 m) = 22 - 2.
    const double root = (-std::sqrt(0.125) + std::sqrt(0.125 + 4 * 0.5 * 20)) / (2 * 0.5);
    const std::tuple<const char*, Bytes, Bytes, double> cases[] = {
        {"own axis", tof(1, 4e12, 0), tof(2, 1e12, 0, 555), 400},
        {"class of the reference", tof(1, 4e12, 0), tof(0, 4e12, 1), std::pow((-0.5 + std::sqrt(0.25 + 88)) / 2, 2)},
        {"and back", tof(1, 4e12, 1), tof(0, 4e12, 0), 22 * 22 * 4},
        {"TOF2 by its own", tof2(1, 4e12, 1, 1, 1), tof2(2, 1e12, 0, 0, 3, 555), 400 - 3},
        {"TOF1 for TOF2", tof2(1, 4e12, 1, 1, 1), tof(2, 1e12, 0, 555), 400},
        {"TOF2 without c3 and c4 for TOF1", tof(1, 4e12, 1), tof2(2, 1e12, 0, 0, 0, 555), 400},
        {"TOF2 with c4 for TOF1", tof(1, 4e12, 1), tof2(2, 1e12, 0, 0, 1e-300), g_nothing},
        {"TOF2 with c3 for TOF1", tof(1, 4e12, 1), tof2(2, 1e12, 0, -1e-300, 0), g_nothing},
        {"another kind", tof(1, 4e12, 1), line(100), g_nothing},
        {"another kind still", line(100), tof2(2, 1e12, 0, 0, 0), g_nothing},
        {"one temperature", compensatedTof(9, 9, 9, 30), compensatedTofReference(2, 4e12, 1, 25, 2e5), root * root},
        {"of the reference alone", tof(9, 9, 9), compensatedTofReference(2, 1e12, 0, 25, 2e5), 400},
        {"of the spectrum alone", compensatedTof(9, 9, 9, 30), tof(2, 1e12, 0), 400},
    };
    for (const auto& [name, ownBlob, reference, mass] : cases) {
        const auto organizer = read({.references = {{.references = {{.calibrator = {.blob = reference}}}}}});
        const TransformatorPtr own = DeserializeBlob(ownBlob);
        const double before = own->DIndexToMass(4);
        EXPECT_NEAR(massAtFour(organizer, 0, 0, own), mass, 1e-12 * std::abs(mass)) << name;
        EXPECT_EQ(own->DIndexToMass(4), before) << name;
    }
}

TEST(CalibratorOfASpectrum, CorrectionsAreTheReferencesAndBoundsItsOwn) {
    using kvan::calibration::Constants::CalibrationPolynomialGPX;
    const TransformatorPtr own = DeserializeBlob(tof(1, 4e12, 0));
    const TransformatorPtr reference = DeserializeBlob(tof(2, 1e12, 0, 555));
    // Precise mass + 1 is what the law gives.
    const auto corrected = [&](const TransformatorPtr& inner) {
        return g_factory.createTransformatorGPX(
            inner, std::make_shared<CalibrationPolynomialGPX>(std::vector<double>{1, 1}, 0, 0, 0, 1e6, true));
    };
    const auto bounded = [&](const TransformatorPtr& inner, double lower, double upper) {
        return g_factory.createDecoratedTransformator(Factory::Decorator::RawBounds, inner, lower, upper);
    };
    const auto massAt = [](double index, const TransformatorPtr& merged) { return merged->DIndexToMass(index); };
    EXPECT_EQ(massAt(4, mergeReference(corrected(own), reference)), 400);
    EXPECT_EQ(massAt(4, mergeReference(own, corrected(reference))), 399);
    EXPECT_EQ(massAt(4, mergeReference(corrected(own), corrected(reference))), 399);
    EXPECT_EQ(mergeReference(DeserializeBlob(line(100)), corrected(reference)), nullptr);

    const TransformatorPtr merged = mergeReference(bounded(own, 0, 21), bounded(corrected(reference), 600, 700));
    EXPECT_EQ(merged->RawToMass(20), 323);
    EXPECT_EQ(merged->RawToMass(30), 360) << "as at 21";
    own->SetIndexOffset(2);
    EXPECT_EQ(massAt(2, mergeReference(bounded(own, 0, 100), reference)), 400);
    EXPECT_EQ(mergeReference(bounded(own, 0, 100), DeserializeBlob(line(100))), nullptr);
}

TEST(CalibratorOfASpectrum, OfParentMassesThePolynomialsStay) {
    const auto kite1 = [&](double c2) {
        return g_factory.createTransformatorKite(DeserializeBlob(tof(1, 4e12, 0)), {.coefficients = {1, c2}});
    };
    const auto kite2 = [&](double c2) {
        return g_factory.createTransformatorKite2(20, 0.5, 0, 4e12, 0, {{.coefficients = {1, c2}}},
                                                  {.coefficients = {0, 1}}, {}, 0, 0, 0, 0, 0);
    };
    EXPECT_NE(kite1(2)->DIndexToMass(4), kite1(3)->DIndexToMass(4));
    EXPECT_EQ(mergeReference(kite1(2), kite1(3))->DIndexToMass(4), kite1(2)->DIndexToMass(4));
    EXPECT_EQ(mergeReference(kite2(2), kite2(3)), nullptr);
    EXPECT_EQ(mergeReference(kite2(2), DeserializeBlob(tof(1, 4e12, 0))), nullptr);
    EXPECT_EQ(mergeReference(DeserializeBlob(tof(1, 4e12, 0)), kite2(2)), nullptr);
}

TEST(CalibratorOfASpectrum, OfPostSourceDecayTheLawInsideIsReplaced) {
    const auto around = [&](const Bytes& calibrator) {
        return g_factory.createTransformatorPsd(DeserializeBlob(calibrator), nullptr);
    };
    const TransformatorPtr merged = mergeReference(around(tof(1, 4e12, 0)), around(tof(2, 1e12, 0, 555)));
    EXPECT_EQ(merged->GetFunctionalTypeCode(), 6);
    EXPECT_EQ(merged->DIndexToMass(4), 400);
    EXPECT_EQ(mergeReference(around(tof(1, 4e12, 0)), DeserializeBlob(tof(2, 1e12, 0))), nullptr);
}

class ArchiveFile : public ::testing::Test {
protected:
    /// "" or what the log says.
    std::string open() {
        ::testing::internal::CaptureStdout();
        const bool isOpen = m_reader.open(m_path);
        const std::string log = ::testing::internal::GetCapturedStdout();
        const std::string logger = "[WARN ] kvan.io.amiReader: ";
        EXPECT_EQ(isOpen, log.empty());
        return isOpen ? "" : log.substr(log.find(logger) + logger.size());
    }

    std::string openWith(const Bytes& bytes) {
        kvan::test::writeFile(m_path, bytes);
        return open();
    }

    std::string refused(const char* reason) const {
        return "Specified AMI file '" + m_path.string() + "' " + reason + "\n";
    }

    std::string failureOfAsking() const {
        TransformatorPtr calibrator;
        return kvan::test::failureOf([&] { m_reader.getCalibrator(0, POLARITY_POSITIVE, calibrator); });
    }

    const kvan::test::TemporaryDirectory m_directory;
    const fs::path m_path = m_directory / "Calibrator.ami";
    CalibratorAmiReader m_reader;
};

TEST_F(ArchiveFile, HeadAndPayload) {
    const std::string notOpen = "No Calibrator.ami opened.";
    EXPECT_EQ(failureOfAsking(), notOpen);
    const Bytes whole = archiveBytes(full());
    EXPECT_EQ(openWith(whole), "");
    EXPECT_EQ(failureOfAsking(), "");

    Bytes file = whole;
    file.insert(file.end(), 1000, 0xFF);
    EXPECT_EQ(openWith(file), "") << "bytes after the payload";
    ++file[9];
    file[4] = 0xFF;
    EXPECT_EQ(openWith(file), "") << "bytes after the top record";
    file[10] = 1;
    EXPECT_EQ(openWith(file), refused("ends inside its payload."));
    EXPECT_EQ(failureOfAsking(), notOpen);

    for (const std::uint32_t version : {0U, 3U, 0xFFFFFFFFU}) {
        std::memcpy(file.data(), &version, 4);
        EXPECT_EQ(openWith(file), "") << "the rest is not looked at";
        EXPECT_EQ(failureOfAsking(), notOpen);
    }
    constexpr std::uint32_t untested = 1;
    std::memcpy(file.data(), &untested, 4);
    EXPECT_EQ(openWith(file), "Untested code path.\n");

    for (const std::size_t size : {std::size_t{0}, std::size_t{11}})
        EXPECT_EQ(openWith(Bytes(size)), refused("ends inside its head."));
    EXPECT_EQ(openWith({whole.begin(), whole.end() - 1}), refused("ends inside its payload."));
    EXPECT_EQ(openWith({2, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0xFF, 0xFF, 0xFF}), refused("ends inside its payload."));
    EXPECT_EQ(openWith({2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}),
              "Trying to read 4 bytes from buffer of size 0 at offset 0: Binary position out of bounds\n");
    EXPECT_EQ(failureOfAsking(), notOpen);
}

TEST_F(ArchiveFile, OnlyRegularFilesAreOpened) {
    const std::string notRegular = refused("is not a regular file (expecting name of Calibrator.ami).");
    EXPECT_EQ(open(), refused("doesn't exist."));
    fs::create_directory(m_path);
    EXPECT_EQ(open(), notRegular);
    fs::remove(m_path);
    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    EXPECT_EQ(open(), notRegular) << "a pipe that nobody writes to";
    fs::remove(m_path);
    fs::create_symlink(m_path, m_path);
    EXPECT_EQ(open(), refused("couldn't be opened.")) << "a link in a circle";
}

}  // namespace
}  // namespace archives
