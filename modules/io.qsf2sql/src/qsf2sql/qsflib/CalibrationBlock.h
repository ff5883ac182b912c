#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

#include <cstdint>
#include <vector>

namespace KVAN::io::QSF {

/// A serialised calibration.
class CalibrationBlock {
public:
    /// Throws `Qsf2SqlFileFormatError` also for a block that is smaller than its head.
    void Read(kvan::io::QSFBlockedReader& reader);

    /// Fails as `Read` would and takes no memory; leaves the position after the head. Gives the bytes that follow.
    static std::uint64_t PassOver(kvan::io::QSFBlockedReader& reader);

    std::vector<std::uint8_t> blob;  ///< what follows the block's head
};

}  // namespace KVAN::io::QSF
