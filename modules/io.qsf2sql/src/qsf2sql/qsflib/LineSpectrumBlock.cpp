#include "qsf2sql/qsflib/LineSpectrumBlock.h"

#include "qsf2sql/qsflib/ExtendedLineBlock.h"
#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace KVAN::io::QSF {

template <class Extended>
bool LineSpectrumBlock::seekToField(kvan::io::QSFBlockedReader& reader, std::uint8_t field) {
    Extended extended;
    extended.Read(reader);
    if (field < g_firstLineField || field > g_lastLineField)
        BOOST_THROW_EXCEPTION(std::invalid_argument("Requested field ID out of range: #" + std::to_string(field)));
    m_nativeType = Extended::GetNativeType(field);
    return extended.SeekTo(reader, field);
}

bool LineSpectrumBlock::ReadHeaderAndSeekToFieldData(kvan::io::QSFBlockedReader& reader, std::uint8_t field) {
    const auto header = CQSFUtil::ReadHeader<LineSpectrumHeader>(reader, RESTYPE_LINE_SPECTRUM);
    bool exists = false;
    switch (header.layout) {
        case LINES_FLOAT_FLOAT:
            exists = seekToField<ExtendedLineBlock<float, float>>(reader, field);
            break;
        case LINES_DOUBLE_DOUBLE:
            exists = seekToField<ExtendedLineBlock<double, double>>(reader, field);
            break;
        case LINES_DOUBLE_FLOAT:
            exists = seekToField<ExtendedLineBlock<double, float>>(reader, field);
            break;
        default:
            BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError("Shouldn't happen"));
    }
    m_entryCount = exists ? header.count : 0;
    m_dataPosition = exists ? reader.tell() : 0;
    return exists;
}

}  // namespace KVAN::io::QSF
