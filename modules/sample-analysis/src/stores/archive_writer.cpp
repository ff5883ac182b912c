#include "native/block_file.h"

#include <binaryio/magic_number.h>
#include <sample-analysis/archive_writer.h>
#include <sysutils/platform.h>

#include <array>
#include <boost/filesystem/fstream.hpp>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// One function a record, from top to bottom as docs/calibrator-ami.md describes them: a tag, a version, the fields that
// this version has. Versions are compared as pairs, and where one does not exist the fields of the next one below are
// written, so that readers can be tried with numbers that no software ever wrote. Fields that no reader looks at get
// numbers that would be noticed if they were taken for something else.
//
// A record's overload of `put` stands beside what it is made of; the three declared first are needed by `putRecords`
// before their definitions. The payload is built in memory, because its length comes before it in the file.

namespace kvan::sample::stores {

namespace {

// A number of its own, not the hash of a name.
constexpr std::uint32_t g_lockMassParamsTag = 0xBFA25436;

void put(Bytes& out, const ArchivedReference& reference);
void put(Bytes& out, const ArchivedStatus& status);
void put(Bytes& out, const ArchivedLockMass& spectrum);

template <class Number>
requires std::is_arithmetic_v<Number>
void put(Bytes& out, Number value) {
    append(out, value);
}

void put(Bytes& out, const ArchiveVersion& version) {
    put(out, version.major);
    put(out, version.minor);
}

std::uint32_t sizeField(std::size_t size) {
    return boost::numeric_cast<std::uint32_t>(size);
}

void putTag(Bytes& out, const char* name) {
    put(out, binaryio::MagicNumber::valueOf(name));
}

void putHead(Bytes& out, const char* name, const ArchiveVersion& version) {
    putTag(out, name);
    put(out, version);
}

void putString(Bytes& out, const std::string& text) {
    putTag(out, "CString-ASCII");
    // The terminator counts.
    put(out, sizeField(text.size() + 1));
    append(out, text.c_str(), text.size() + 1);
}

/// BYTES: a length and that many bytes.
void putBytes(Bytes& out, const Bytes& bytes) {
    put(out, sizeField(bytes.size()));
    append(out, bytes.data(), bytes.size());
}

template <class Element>
void putArray(Bytes& out, std::size_t count, Element element = {}) {
    putTag(out, "CArray");
    put(out, sizeField(count));
    // All elements alike: readers pass over these arrays, and only their length can be wrong.
    for (std::size_t index = 0; index < count; ++index)
        put(out, element);
}

void putDoubleArrays(Bytes& out, int arrays, std::size_t count) {
    for (int array = 0; array < arrays; ++array)
        putArray<double>(out, count, 622.029);
}

template <class Record>
void putRecords(Bytes& out, const std::vector<Record>& records) {
    putTag(out, "CArray");
    put(out, sizeField(records.size()));
    for (const Record& record : records)
        put(out, record);
}

void put(Bytes& out, const ArchivedCalibrator& calibrator) {
    putHead(out, "ReferenceCalibrator", calibrator.version);
    if (calibrator.version == ArchiveVersion{1, 0})
        putBytes(out, calibrator.blob);
    if (calibrator.version == ArchiveVersion{0, 2})
        putString(out, calibrator.text);
}

void put(Bytes& out, const ArchivedReference& reference) {
    putHead(out, "ReferenceCalibrator", reference.version);
    put(out, reference.polarity);
    put(out, reference.msmsType);
    if (reference.version == ArchiveVersion{0, 1})
        putString(out, reference.calibrator.text);
    else if (reference.version == ArchiveVersion{0, 2})
        putBytes(out, reference.calibrator.blob);
    else
        put(out, reference.calibrator);
}

void putCalibrationData(Bytes& out, const ArchivedStatus& status) {
    putHead(out, "CalibrationData", status.dataVersion);
    putDoubleArrays(out, 4, status.elements);
    if (status.dataVersion >= ArchiveVersion{0, 3})
        putArray<float>(out, status.elements);
    putDoubleArrays(out, 1, status.elements);
    put(out, 0.8);
    if (status.dataVersion >= ArchiveVersion{1, 0}) {
        put(out, 0.0);
        put(out, 0.0);
    }
}

void putTime(Bytes& out) {
    putHead(out, "CDateTimeTZI", {1, 0});
    putHead(out, "CDateTime", {1, 0});
    put(out, std::uint16_t{2024});
    append(out, std::array<std::uint8_t, 4>{5, 17, 9, 45});  // month, day, hour, minute
    put(out, std::uint16_t{500});
    put(out, true);
    put(out, std::uint16_t{120});
}

void putQualityCheck(Bytes& out, const ArchivedStatus& status) {
    putHead(out, "CalibrationQualityCheck", status.qualityVersion);
    if (status.qualityVersion == ArchiveVersion{0, 1})
        putString(out, status.calibrator.text);
    else
        putBytes(out, status.calibrator.blob);
    putDoubleArrays(out, 2, status.elements);
    put(out, 0.3);
    putDoubleArrays(out, 4, status.elements);
}

void put(Bytes& out, const ArchivedStatus& status) {
    putHead(out, "CCalibrationStatus", status.version);
    if (status.version >= ArchiveVersion{0, 3})
        put(out, std::uint32_t{1});
    putString(out, status.description);
    putString(out, "spectrum");
    putArray<std::uint32_t>(out, status.elements);
    // Old stati end here.
    if (status.version <= ArchiveVersion{1, 0})
        return;
    // Before and after the calibration, first as blobs, further down as records.
    putBytes(out, status.calibrator.blob);
    putBytes(out, status.calibrator.blob);
    put(out, std::uint32_t{0});
    putString(out, "chromatogram");
    putTag(out, "CArray");
    put(out, std::uint32_t{1});
    putCalibrationData(out, status);
    putTime(out);
    if (status.version >= ArchiveVersion{1, 2})
        putTime(out);
    put(out, std::uint32_t{0});
    put(out, std::uint32_t{0});
    putQualityCheck(out, status);
    put(out, status.calibrator);
    put(out, status.calibrator);
    if (status.version >= ArchiveVersion{1, 3}) {
        putString(out, "method");
        putString(out, "");
    }
}

void putStati(Bytes& out, const std::vector<ArchivedStatus>& stati) {
    putHead(out, "CCalibrationStati", {0, 1});
    putRecords(out, stati);
}

void put(Bytes& out, const ArchivedReferences& references) {
    putHead(out, "CReferenceCalibrators", references.version);
    putRecords(out, references.references);
    // The oldest references have no record of how they came about.
    if (references.version >= ArchiveVersion{0, 2})
        putStati(out, references.stati);
}

void put(Bytes& out, const ArchivedLockMassParams& params) {
    put(out, g_lockMassParamsTag);
    put(out, params.version);
    put(out, 20.0);
    putHead(out, "CReferenceMassList", params.massListVersion);
    putString(out, "masses");
    putString(out, "");
    put(out, sizeField(params.masses.size()));
    for (const double mass : params.masses) {
        putString(out, "mass");
        put(out, mass);
        put(out, std::uint32_t{1});
        if (params.massListVersion >= ArchiveVersion{1, 1})
            putString(out, "");
    }
    if (params.version >= ArchiveVersion{0, 2} && params.version <= ArchiveVersion{0, 3})
        put(out, true);
    if (params.version >= ArchiveVersion{0, 3}) {
        put(out, 1000.0);
        put(out, std::uint32_t{1});
    }
}

void put(Bytes& out, const ArchivedLockMass& spectrum) {
    putHead(out, spectrum.hasShortTag ? "CCalibrationData" : "CLockMassCalibrationMgr::CCalibrationData",
            spectrum.version);
    // The entry gives its size first, so that a reader can pass over one that it cannot read.
    Bytes content;
    if (spectrum.calibrator) {
        if (spectrum.version <= ArchiveVersion{1, 0})
            putString(content, spectrum.calibrator->text);
        else if (spectrum.version == ArchiveVersion{1, 1})
            put(content, *spectrum.calibrator);
        else
            content = spectrum.calibrator->blob;
    }
    content.insert(content.end(), spectrum.padding.begin(), spectrum.padding.end());
    putBytes(out, content);
    if (spectrum.trailingText)
        putString(out, *spectrum.trailingText);
}

void put(Bytes& out, const ArchivedLockMasses& lockMasses) {
    putHead(out, "CLockMassCalibrationMgr", lockMasses.version);
    put(out, lockMasses.params.has_value());
    if (lockMasses.params)
        put(out, *lockMasses.params);
    putRecords(out, lockMasses.spectra);
    // As with the references.
    if (lockMasses.version >= ArchiveVersion{1, 1})
        putStati(out, lockMasses.stati);
}

void put(Bytes& out, const ArchivedManager& manager) {
    put(out, manager.kind);
    // Readers stop at a kind that they do not know, and so does the record.
    if (manager.kind > 1)
        return;
    putHead(out, manager.kind == 0 ? "CSingleCalibratorManager" : "CMultiCalibratorManager", manager.version);
    if (manager.kind == 1)
        put(out, sizeField(manager.calibrators.size()));
    for (const Bytes& calibrator : manager.calibrators)
        putBytes(out, calibrator);
}

}  // namespace

Bytes archiveBytes(const CalibratorArchive& archive) {
    Bytes payload;
    putHead(payload, "CDataFileCalibrationOrganizer", archive.version);
    put(payload, archive.references.has_value());
    if (archive.references)
        put(payload, *archive.references);
    put(payload, archive.lockMasses);
    // Later archives have no calibrators of the acquisition: the native file has them.
    if (archive.version <= ArchiveVersion{1, 1}) {
        put(payload, archive.manager.has_value());
        if (archive.manager)
            put(payload, *archive.manager);
    }
    if (archive.version >= ArchiveVersion{1, 1})
        put(payload, archive.useLockMass);

    Bytes file;
    put(file, archive.fileVersion);
    // Not looked at.
    put(file, std::uint32_t{0});
    putBytes(file, payload);
    return file;
}

void writeArchive(const boost::filesystem::path& directory, const CalibratorArchive& archive) {
    const auto path = directory / g_archiveName;
    const Bytes bytes = archiveBytes(archive);
    boost::filesystem::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        BOOST_THROW_EXCEPTION(std::runtime_error("Can't write file: " + sys::pathToUtf8(path)));
}

}  // namespace kvan::sample::stores
