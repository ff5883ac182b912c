#pragma once

#include "qsf2sql/qsflib/AnalysisDescriptionBlock.h"
#include "qsf2sql/qsflib/CalibrationBlock.h"
#include "qsf2sql/qsflib/VarTabDescBlock.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

#include <memory>
#include <vector>

namespace KVAN::io::QSF {

/// ANALYSIS_HEADER and what its pool holds.
class AnalysisHeaderBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader);

    AnalysisHeaderRecord header{};
    std::shared_ptr<AnalysisDescriptionBlock> description;        ///< null if the pool has none
    std::shared_ptr<VarTabDescBlock> variables;                   ///< null if the pool has none
    std::vector<std::shared_ptr<CalibrationBlock>> calibrations;  ///< in the order of the file
};

}  // namespace KVAN::io::QSF
