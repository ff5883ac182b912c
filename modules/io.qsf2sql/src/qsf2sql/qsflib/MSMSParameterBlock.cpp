#include "qsf2sql/qsflib/MSMSParameterBlock.h"

#include <qsf2sql/qsflib/VariableTableRecords.h>

namespace KVAN::io::QSF {

// Tolerated: any version. Nobody reads the words, but a block without them is a damaged one.
void MSMSParameterBlock::PassOver(kvan::io::QSFBlockedReader& reader) {
    const std::uint64_t start = reader.tell();
    const auto header = kvan::io::readRecord<MSMSParameterHeader>(reader);
    reader.seekTo(start + header.wordOffset);
    reader.requireAvailable(header.wordCount, sizeof(std::uint32_t));
}

}  // namespace KVAN::io::QSF
