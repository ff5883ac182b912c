#pragma once

#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/ExtraFileRecords.h>

#include <cstdint>
#include <vector>

namespace KVAN::io::QSF {

/// A quick-info entry of the extra file. One object reads many entries without taking memory for each.
class QuickInfoEntry {
public:
    /// Reads the entry at the reader's position, of a container that ends at `containerEnd` in the file. What would
    /// reach beyond it is a read error; nothing else is verified.
    void Read(kvan::io::QSFBlockedReader& reader, std::uint64_t containerEnd);

    QuickInfoRecord record{};
    std::vector<float> masses;              ///< one a precursor stage, or none
    std::vector<std::uint8_t> calibration;  ///< the spectrum's serialised calibration, head and bytes, at least 4
};

}  // namespace KVAN::io::QSF
