#include "qsf2sql/qsflib/VarTabDescBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/VariableTableRecords.h>

namespace KVAN::io::QSF {

// A fixed part of 20 bytes, then six texts: name, group, display name, value text, format, dimension. They stay in the
// code page of the file: names are compared byte by byte, and of the rest only the dimension is ever converted.
//
// A size below the fixed part would let a small file declare 65535 variables out of the same bytes.
void VarTabDescEntryBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto record = kvan::io::readRecord<VarTabDescEntryRecord>(reader);
    if (record.size < sizeof record)
        reader.readError();
    size = record.size;
    variable = record.variable;
    elementType = record.elementType;
    isVector = record.isVector;
    texts = CQSFUtil::ReadTexts(reader, record, start, record.size);
}

// Entries follow one another by their sizes. The last one may end with the block, none after it.
void VarTabDescBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto header = CQSFUtil::ReadHeader<VarTabDescHeader>(reader, RESTYPE_VAR_TAB_DESCRIPTION);
    entries.clear();
    std::uint64_t position = start + header.entryOffset;
    for (unsigned index = 0; index < header.entryCount; ++index) {
        reader.seekTo(position);
        entries.emplace_back().Read(reader);
        position += entries.back().size;
        if (position > start + header.resource.size)
            reader.readError();
    }
}

}  // namespace KVAN::io::QSF
