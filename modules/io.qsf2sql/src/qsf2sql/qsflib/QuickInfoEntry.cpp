#include "qsf2sql/qsflib/QuickInfoEntry.h"

#include <algorithm>
#include <span>

namespace KVAN::io::QSF {

// An entry is a short head, at a distance from it the record, and at distances from the record its masses and
// calibration bytes; neither has a type nor a version to verify. What bounds them is the container.
//
// Tolerated: a level without masses, which gives an empty list; calibration bytes that begin at or after the record's
// end, which leaves the 4 in the record.
void QuickInfoEntry::Read(kvan::io::QSFBlockedReader& reader, std::uint64_t containerEnd) {
    // Else many small containers could share one large record, and a small file ask for a huge cache.
    const auto requireInside = [&](std::uint64_t position, std::uint64_t size) {
        if (position + size > containerEnd)
            reader.readError();
    };
    const std::uint64_t start = reader.tell();
    const auto head = kvan::io::readRecord<QuickInfoHead>(reader);
    const std::uint64_t recordStart = start + head.recordOffset;
    requireInside(recordStart, sizeof record);
    reader.seekTo(recordStart);
    record = kvan::io::readRecord<QuickInfoRecord>(reader);

    const std::size_t massCount = record.massOffset != 0 ? record.msLevel : 0;
    masses.clear();
    if (massCount != 0) {
        requireInside(recordStart + record.massOffset, massCount * sizeof(float));
        reader.seekTo(recordStart + record.massOffset);
        kvan::io::readArray(reader, massCount, masses);
    }

    constexpr std::size_t headSize = sizeof record.calibrationHead;
    const bool hasBytes = record.calibrationOffset != 0 && record.size > record.calibrationOffset;
    const std::size_t byteCount = hasBytes ? static_cast<std::size_t>(record.size - record.calibrationOffset) : 0;
    requireInside(recordStart, byteCount != 0 ? record.size : 0);
    calibration.resize(headSize + byteCount);
    std::copy_n(record.calibrationHead, headSize, calibration.begin());
    if (byteCount != 0) {
        reader.seekTo(recordStart + record.calibrationOffset);
        kvan::io::readArray(reader, std::span(calibration).subspan(headSize));
    }
}

}  // namespace KVAN::io::QSF
