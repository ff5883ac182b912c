#include "qsf2sql/qsflib/SpectrumConditionBlock.h"

#include "qsf2sql/qsflib/CalibrationBlock.h"
#include "qsf2sql/qsflib/MSMSParameterBlock.h"
#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

// The calibration and the MS/MS parameters are taken in their turn but not kept: nobody uses them, the calibration in
// force comes from elsewhere. Their damage is the block's damage.
void SpectrumConditionBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<SpectrumConditionRecord>(reader, RESTYPE_SPECTRUM_CONDITION);
    m_pool.Read(reader, start, header.resource.size, header.poolOffset);
    m_pool.TakeTable(reader, values);
    m_pool.TakeTable(reader, strings);
    m_pool.PassOver<CalibrationBlock>(reader, RESTYPE_CALIBRATION);
    m_pool.PassOver<MSMSParameterBlock>(reader, RESTYPE_MSMS_PARAMETER);
    m_pool.TakeTable(reader, integerVectors);
    m_pool.TakeTable(reader, doubleVectors);
    m_pool.TakeTable(reader, stringVectors);
}

}  // namespace KVAN::io::QSF
