#pragma once

#include <calibration-core/interfaces/Polarity.h>
#include <sample-analysis/analysis_data.h>

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The archive of re-calibrations `Calibrator.ami`, record by record as docs/calibrator-ami.md has them. Every record
/// is written in the version that it names, with what that version holds; a version that does not exist gets the fields
/// of the next one below. Members that a version does not have are not looked at.
namespace kvan::sample::stores {

inline constexpr const char* g_archiveName = "Calibrator.ami";

struct ArchiveVersion {
    std::uint16_t major = 1;
    std::uint16_t minor = 0;

    friend auto operator<=>(const ArchiveVersion&, const ArchiveVersion&) = default;
};

/// The calibrator inside a reference. The text of version 0.2, the blob of 1.0; other versions hold nothing.
struct ArchivedCalibrator {
    ArchiveVersion version = {1, 0};
    Bytes blob = {};
    std::string text = {};
};

/// The calibrator of all spectra of one polarity.
struct ArchivedReference {
    ArchiveVersion version = {0, 3};
    std::uint32_t polarity = POLARITY_POSITIVE;
    std::uint32_t msmsType = 0;
    ArchivedCalibrator calibrator = {};
};

/// What was done to get at a calibration. `elements` is the length of all its arrays.
struct ArchivedStatus {
    ArchiveVersion version = {1, 3};
    ArchiveVersion dataVersion = {1, 0};
    ArchiveVersion qualityVersion = {0, 2};
    std::string description = {};
    ArchivedCalibrator calibrator = {};  ///< before and after
    std::uint32_t elements = 2;
};

struct ArchivedReferences {
    ArchiveVersion version = {0, 3};
    std::vector<ArchivedReference> references = {};
    std::vector<ArchivedStatus> stati = {};
};

/// The calibrator of one spectrum: a text in version 1.0, an inner calibrator in 1.1, a blob above.
struct ArchivedLockMass {
    ArchiveVersion version = {1, 3};
    bool hasShortTag = false;
    std::optional<ArchivedCalibrator> calibrator = {};  ///< none: size 0
    Bytes padding = {};                                 ///< counts as the entry's
    std::optional<std::string> trailingText = {};       ///< from 1.2 on: the same once more as text
};

struct ArchivedLockMassParams {
    ArchiveVersion version = {1, 0};
    ArchiveVersion massListVersion = {1, 1};
    std::vector<double> masses = {};
};

struct ArchivedLockMasses {
    ArchiveVersion version = {1, 1};
    std::optional<ArchivedLockMassParams> params = {};
    std::vector<ArchivedLockMass> spectra = {};
    std::vector<ArchivedStatus> stati = {};
};

/// The calibrators that the acquisition began with, up to version 1.1 of the archive.
struct ArchivedManager {
    std::uint32_t kind = 0;  ///< 0: one calibrator, 1: several; any other: nothing follows
    ArchiveVersion version = {1, 1};
    std::vector<Bytes> calibrators = {Bytes{}};
};

struct CalibratorArchive {
    std::uint32_t fileVersion = 2;
    ArchiveVersion version = {1, 2};
    std::optional<ArchivedReferences> references = {};
    ArchivedLockMasses lockMasses = {};
    std::optional<ArchivedManager> manager = {};
    bool useLockMass = true;
};

/// The bytes of the file.
Bytes archiveBytes(const CalibratorArchive& archive);

/// Writes `Calibrator.ami` into `directory`, over a file of that name. Throws `std::runtime_error` "Can't write file: "
/// and the path.
void writeArchive(const boost::filesystem::path& directory, const CalibratorArchive& archive);

}  // namespace kvan::sample::stores

namespace kvan::sample {
using namespace stores;  // callers need not know the room
}
