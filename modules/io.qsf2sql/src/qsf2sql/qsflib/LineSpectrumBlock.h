#pragma once

#include <qsf2sql/array_id.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <cstdint>

namespace KVAN::io::QSF {

/// The peak list of a spectrum: up to six parallel vectors, never compressed, each of which can be reached by itself.
class LineSpectrumBlock {
public:
    /// Reads the heads of the block at `position` and gives where the elements of the field lie, `Absent` if the block
    /// has no such field. The elements need not be in the file. Throws `Qsf2SqlFileFormatError`, and
    /// `std::invalid_argument` "Requested field ID out of range: #" and the number for a field outside 16 to 21.
    static kvan::io::StoredArray Locate(kvan::io::QSFBlockedReader& reader, std::uint64_t position, std::uint8_t field);
};

}  // namespace KVAN::io::QSF
