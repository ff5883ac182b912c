#pragma once

#include "qsf2sql/qsf_blocked_reader.h"

#include <cstdint>
#include <vector>

namespace KVAN::io::QSF {

/// A serialised calibration.
class CalibrationBlock {
public:
    /// Throws `Qsf2SqlFileFormatError` also for a block that is smaller than its head.
    void Read(kvan::io::QSFBlockedReader& reader);

    std::vector<std::uint8_t> blob;  ///< what stands behind the block's head
};

}  // namespace KVAN::io::QSF
