#pragma once

#include <binaryio/heap_binary.h>
#include <binaryio/magic_number.h>
#include <binaryio/version_number.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// The records of the archive, one class each, and here what they are made of. Every count and length is held against
/// the bytes that are left before memory or a loop depends on it, and fails as the read beyond the end would.
namespace kvan::io::ami {

using binaryio::MagicNumber;
using binaryio::VersionNumber;
using Stream = binaryio::IRanAccessBinary;
using Bytes = std::vector<unsigned char>;

/// The tags of all records. Made together, so that a wrong one is named in the failure.
struct Tags {
    static const Tags& get();

    const MagicNumber organizer{"CDataFileCalibrationOrganizer"};
    const MagicNumber referenceCalibrators{"CReferenceCalibrators"};
    const MagicNumber referenceCalibrator{"ReferenceCalibrator"};
    const MagicNumber calibrationStati{"CCalibrationStati"};
    const MagicNumber calibrationStatus{"CCalibrationStatus"};
    const MagicNumber calibrationData{"CalibrationData"};
    const MagicNumber calibrationQualityCheck{"CalibrationQualityCheck"};
    const MagicNumber dateTimeTZI{"CDateTimeTZI"};
    const MagicNumber dateTime{"CDateTime"};
    const MagicNumber singleCalibratorManager{"CSingleCalibratorManager"};
    const MagicNumber multiCalibratorManager{"CMultiCalibratorManager"};
    const MagicNumber lockMassCalibrationMgr{"CLockMassCalibrationMgr"};
    const MagicNumber lockMassCalibrationData{"CLockMassCalibrationMgr::CCalibrationData"};
    const MagicNumber shortLockMassCalibrationData{"CCalibrationData"};
    const MagicNumber lockMassParams{0xBFA25436};  // of another name than the record's
    const MagicNumber referenceMassList{"CReferenceMassList"};
    const MagicNumber array{"CArray"};
    const MagicNumber cString{"CString-ASCII"};
    const MagicNumber stdString{"std_string_ascii"};
};

template <class T>
T read(Stream& stream) {
    T value{};
    stream >> value;
    return value;
}

/// The head of a record: its tag, which must be `tag`, and the version after it.
VersionNumber readHead(Stream& stream, const MagicNumber& tag);
/// The same for a record of which only `versions` are known; throws `UnsupportedVersionError` for any other.
VersionNumber readHead(Stream& stream, const MagicNumber& tag, std::initializer_list<VersionNumber> versions);

/// The head of an array: its tag, and how many elements follow.
std::uint64_t readArrayHead(Stream& stream);

/// A 32-bit length and that many bytes.
Bytes readBytes(Stream& stream);

bool isStringTag(const MagicNumber& tag);
/// Whether a string record follows. The position stays.
bool isStringNext(Stream& stream);

/// The following step over what is not looked at.
void skipBytes(Stream& stream);
void skipString(Stream& stream);
void skipArray(Stream& stream, std::uint64_t elementSize);
void skipDoubleArrays(Stream& stream, int count);

}  // namespace kvan::io::ami
