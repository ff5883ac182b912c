#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace KVAN::io::QSF {

/// The declaration of one variable.
class VarTabDescEntryBlock {
public:
    /// Indices into `texts`.
    enum Text { PermanentName, DisplayGroupName, DisplayName, DisplayValueText, DisplayFormat, DisplayDimension };

    /// Throws `Qsf2SqlFileFormatError` also for an entry that is smaller than its fixed part or than its texts need.
    void Read(kvan::io::QSFBlockedReader& reader);

    std::uint16_t size = 0;            ///< bytes from this entry to the next one
    std::uint16_t variable = 0;        ///< index of the variable in the file
    std::uint16_t elementType = 0;     ///< `VarTabDescEntryRecord::Element`; others are not known
    std::uint16_t isVector = 0;        ///< 1 for a vector, anything else for a scalar
    std::array<std::string, 6> texts;  ///< as stored, in the code page of the file
};

/// The declarations of all variables, out of the pool of ANALYSIS_HEADER.
class VarTabDescBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    std::vector<VarTabDescEntryBlock> entries;
};

}  // namespace KVAN::io::QSF
