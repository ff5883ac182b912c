// Any bytes as a main file end in blocks or in a format error, in memory that the file's size bounds.

#include "native_bytes.h"
#include "qsf2sql/qsflib/AnalysisHeaderBlock.h"
#include "qsf2sql/qsflib/BlockWalk.h"
#include "qsf2sql/qsflib/CompressionInfoBlock.h"
#include "qsf2sql/qsflib/InstrumentInfoBlock.h"
#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"

#include <cstdint>

namespace {

using namespace KVAN::io::QSF;
using kvan::io::QSFBlockedReader;

template <class Block>
void read(QSFBlockedReader& reader) {
    Block block;
    block.Read(reader);
}

void readByType(QSFBlockedReader& reader, std::uint16_t type) {
    switch (type) {
        case COMPRESSION_INFO:
            read<CompressionInfoBlock>(reader);
            break;
        case ANALYSIS_HEADER:
            read<AnalysisHeaderBlock>(reader);
            break;
        case INSTRUMENT_INFO:
            read<InstrumentInfoBlock>(reader);
            break;
        case RESTYPE_SEGMENT_CONDITION:
            read<SegmentConditionBlock>(reader);
            break;
        case RESTYPE_SPECTRUM_CONDITION:
            read<SpectrumConditionBlock>(reader);
            break;
        default:
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto reader = native_bytes::readerOf({data, data + size});
        BlockWalk walk(*reader);
        while (const auto block = walk.next())
            readByType(*reader, walk.contentType(*block));
    } catch (const kvan::io::Qsf2SqlFileFormatError&) {
    }
    return 0;
}
