#include "qsf2sql/qsflib/SpectrumConditionBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

void SpectrumConditionBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<SpectrumConditionRecord>(reader, RESTYPE_SPECTRUM_CONDITION);
    pool.Read(reader, start, header.resource.size, header.poolOffset);
}

}  // namespace KVAN::io::QSF
