#include "qsf2sql/qsflib/QuickInfoEntry.h"

#include <algorithm>

namespace KVAN::io::QSF {

void QuickInfoEntry::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto head = kvan::io::readRecord<QuickInfoHead>(reader);
    const std::uint64_t recordStart = start + head.recordOffset;
    reader.seekTo(recordStart);
    record = kvan::io::readRecord<QuickInfoRecord>(reader);

    const std::size_t massCount = record.massOffset != 0 ? record.msLevel : 0;
    masses.resize(massCount);
    if (massCount != 0) {
        reader.seekTo(recordStart + record.massOffset);
        reader.read(reinterpret_cast<char*>(masses.data()), static_cast<std::int64_t>(massCount * sizeof(float)));
    }

    constexpr std::size_t headSize = sizeof record.calibrationHead;
    const bool hasBytes = record.calibrationOffset != 0 && record.size > record.calibrationOffset;
    const std::size_t byteCount = hasBytes ? static_cast<std::size_t>(record.size - record.calibrationOffset) : 0;
    calibration.resize(headSize + byteCount);
    std::copy_n(record.calibrationHead, headSize, calibration.begin());
    if (byteCount != 0) {
        reader.seekTo(recordStart + record.calibrationOffset);
        reader.read(reinterpret_cast<char*>(calibration.data() + headSize), static_cast<std::int64_t>(byteCount));
    }
}

}  // namespace KVAN::io::QSF
