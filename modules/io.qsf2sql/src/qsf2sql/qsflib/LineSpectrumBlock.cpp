#include "qsf2sql/qsflib/LineSpectrumBlock.h"

#include "qsf2sql/qsflib/ExtendedLineBlock.h"
#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>

namespace KVAN::io::QSF {

using kvan::io::readRecord;

// A block is two heads and the fields, each of them as many floats or doubles as the block has lines:
//
//     0   LineSpectrumHeader: layout and number of lines
//     52  ExtendedLineHeader: six offsets from its own first byte; 0 where the block has no such field
//
// The layout says of what type the indices (field 16) and all other fields are, and with that how long the second head
// is. Both heads are read whole for one field, so that a block that ends within them fails for every field alike.
kvan::io::StoredArray LineSpectrumBlock::Locate(kvan::io::QSFBlockedReader& reader, std::uint64_t position,
                                                std::uint8_t field) {
    reader.seekTo(position);
    const auto header = readRecord<LineSpectrumHeader>(reader);
    const std::uint64_t start = reader.tell();
    CQSFUtil::BlockVerify(header.resource, RESTYPE_LINE_SPECTRUM, start, g_version);
    switch (header.layout) {
        case LINES_FLOAT_FLOAT:
            return ExtendedLineBlock<float, float>::Locate(readRecord<ExtendedLineHeader<float>>(reader), start,
                                                           header.count, field);
        case LINES_DOUBLE_DOUBLE:
            return ExtendedLineBlock<double, double>::Locate(readRecord<ExtendedLineHeader<double>>(reader), start,
                                                             header.count, field);
        case LINES_DOUBLE_FLOAT:
            return ExtendedLineBlock<double, float>::Locate(readRecord<ExtendedLineHeader<float>>(reader), start,
                                                            header.count, field);
        default:
            BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError("Shouldn't happen"));
    }
}

}  // namespace KVAN::io::QSF
