#include "qsf2sql/qsflib/AnalysisHeaderBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"
#include "qsf2sql/qsflib/ResourcePool.h"

namespace KVAN::io::QSF {

// A text that nobody uses is held against the file all the same: a header that promises one and ends before it is
// damaged. The order of taking from the pool is that of the faults: a bad description is reported before bad variables.
// Tolerated: blocks of other types in the pool, and several where one is taken, of which the first counts.
void AnalysisHeaderBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<AnalysisHeaderRecord>(reader, ANALYSIS_HEADER);
    if (header.textOffset != 0 && header.textSize != 0) {
        reader.seekTo(start + header.textOffset);
        reader.requireAvailable(header.textSize, 1);
    }
    ResourcePool pool;
    pool.Read(reader, start, header.resource.size, header.poolOffset);
    description = pool.Take<AnalysisDescriptionBlock>(reader, RESTYPE_ANALYSIS_DESCRIPTION);
    variables = pool.Take<VarTabDescBlock>(reader, RESTYPE_VAR_TAB_DESCRIPTION);
    calibrations = pool.TakeAll<CalibrationBlock>(reader, RESTYPE_CALIBRATION);
}

}  // namespace KVAN::io::QSF
