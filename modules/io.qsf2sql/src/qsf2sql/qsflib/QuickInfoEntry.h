#pragma once

#include "qsf2sql/qsf_blocked_reader.h"
#include "qsf2sql/qsflib/ExtraFileRecords.h"

#include <cstdint>
#include <vector>

namespace KVAN::io::QSF {

/// A quick-info entry of the extra file. One object reads many entries without taking memory for each.
class QuickInfoEntry {
public:
    /// Reads the entry at the reader's position. Nothing in it is verified beyond its lengths.
    void Read(kvan::io::QSFBlockedReader& reader);

    QuickInfoRecord record{};
    std::vector<float> masses;              ///< one a precursor stage, or none
    std::vector<std::uint8_t> calibration;  ///< the spectrum's serialised calibration, head and bytes, at least 4
};

}  // namespace KVAN::io::QSF
