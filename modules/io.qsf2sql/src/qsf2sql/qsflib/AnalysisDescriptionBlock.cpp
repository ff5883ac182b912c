#include "qsf2sql/qsflib/AnalysisDescriptionBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

#include <algorithm>
#include <cmath>

namespace KVAN::io::QSF {

namespace {

/// The number is read as a float and cut toward zero. Tolerated: what no 32-bit integer can hold, undefined for a cast.
/// It becomes the nearest one here, and NaN the -1 of a file that has no description.
std::int32_t truncatedSerial(double number) {
    return std::isnan(number) ? -1 : static_cast<std::int32_t>(std::clamp<double>(number, INT32_MIN, INT32_MAX));
}

}  // namespace

// The texts lie anywhere in the block and have no lengths: each ends where the next one begins.
void AnalysisDescriptionBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto record = CQSFUtil::ReadHeader<AnalysisDescriptionRecord>(reader, RESTYPE_ANALYSIS_DESCRIPTION);
    texts = CQSFUtil::ReadTexts(reader, record, start, record.resource.size);
    instrumentSourceType = record.instrumentSourceType;
    instrumentFamily = record.instrumentFamily;
    instrumentRevision = record.instrumentRevision;
    serialFallback = truncatedSerial(record.serialFallback);
}

}  // namespace KVAN::io::QSF
