#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

#include <string>
#include <vector>

namespace KVAN::io::QSF {

/// COMPRESSION_INFO: the compressors that the scan blocks of the file use.
class CompressionInfoBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    /// One GUID an entry, lower case with hyphens.
    std::vector<std::string> compressors;
};

}  // namespace KVAN::io::QSF
