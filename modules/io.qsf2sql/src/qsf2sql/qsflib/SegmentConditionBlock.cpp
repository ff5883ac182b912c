#include "qsf2sql/qsflib/SegmentConditionBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

// The order of taking is part of the format: of several values of one variable the first one counts. Tables for all
// keys come once each, a second one of a kind is dropped; tables for one key come as often as there are keys.
void SegmentConditionBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    header = CQSFUtil::ReadHeader<SegmentConditionRecord>(reader, RESTYPE_SEGMENT_CONDITION);
    m_pool.Read(reader, start, header.resource.size, header.poolOffset);
    m_pool.TakeTable(reader, values);
    m_pool.TakeTable(reader, strings);
    m_pool.TakeTable(reader, integerVectors);
    m_pool.TakeTable(reader, doubleVectors);
    m_pool.TakeTable(reader, stringVectors);
    m_pool.TakeAllTables(reader, keyedValues);
    m_pool.TakeAllTables(reader, keyedStrings);
    m_pool.TakeAllTables(reader, keyedIntegerVectors);
    m_pool.TakeAllTables(reader, keyedDoubleVectors);
    m_pool.TakeAllTables(reader, keyedStringVectors);
}

}  // namespace KVAN::io::QSF
