#pragma once

#include <qsf2sql/qsf_blocked_reader.h>

#include <array>
#include <cstdint>
#include <string>

namespace KVAN::io::QSF {

/// Sample, method and instrument of the analysis, out of the pool of ANALYSIS_HEADER.
class AnalysisDescriptionBlock {
public:
    /// Indices into `texts`; the others have no meaning here.
    enum Text {
        InstrumentName = 1,
        OperatorName = 2,
        AcquisitionSoftware = 3,
        AcquisitionSoftwareVersion = 4,
        AcquisitionMethod = 5,
        SampleName = 8,
        Description = 9,
    };

    void Read(kvan::io::QSFBlockedReader& reader);

    std::array<std::string, 10> texts;  ///< as stored, in the code page of the file
    std::uint8_t instrumentSourceType = 0;
    std::uint16_t instrumentFamily = 0;
    std::uint8_t instrumentRevision = 0;
    /// Serial number of older files, truncated toward zero; saturates, and NaN gives -1.
    std::int32_t serialFallback = -1;
};

}  // namespace KVAN::io::QSF
