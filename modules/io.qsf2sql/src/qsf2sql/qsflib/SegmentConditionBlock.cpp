#include "qsf2sql/qsflib/SegmentConditionBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

void SegmentConditionBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<SegmentConditionRecord>(reader, RESTYPE_SEGMENT_CONDITION);
    pool.Read(reader, start, header.resource.size, header.poolOffset);
}

}  // namespace KVAN::io::QSF
