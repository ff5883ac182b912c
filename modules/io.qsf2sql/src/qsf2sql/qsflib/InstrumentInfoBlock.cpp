#include "qsf2sql/qsflib/InstrumentInfoBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/qsflib/MainFileRecords.h>

namespace KVAN::io::QSF {

namespace {

constexpr std::uint64_t g_listEntryHead = 24;

}  // namespace

// Three texts, of which the middle one is not used, and a list of which only the heads must fit into the file: what was
// never needed is held against the file, not understood.
void InstrumentInfoBlock::Read(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto record = CQSFUtil::ReadHeader<InstrumentInfoRecord>(reader, INSTRUMENT_INFO);
    std::string texts[std::extent_v<decltype(record.textOffset)>];
    for (std::size_t index = 0; index < std::size(texts); ++index)
        if (record.textOffset[index] != 0)
            texts[index] = CQSFUtil::ReadText(reader, start + record.textOffset[index], record.textSize[index]);
    if (record.listOffset != 0) {
        reader.seekTo(start + record.listOffset);
        reader.requireAvailable(record.listCount, g_listEntryHead);
    }
    textA = texts[0];
    textB = texts[2];
}

}  // namespace KVAN::io::QSF
