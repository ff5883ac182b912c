#include "qsf2sql/qsflib/QSFUtil.h"

#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>

namespace KVAN::io::QSF {

void CQSFUtil::BlockVerify(const RESOURCE_HEADER& header, _RESOURCE_TYPE expectedType, const std::uint64_t& offset,
                           std::uint16_t expectedVersion) {
    if (header.type == expectedType && header.version == expectedVersion)
        return;
    BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError(
        "QSF: expected resource type: " + std::to_string(expectedType) + ", got: " + std::to_string(header.type) +
        " current offset: " + std::to_string(offset) + "; expected version: " + std::to_string(expectedVersion) +
        ", got: " + std::to_string(header.version)));
}

std::string CQSFUtil::ReadText(kvan::io::QSFBlockedReader& reader, std::uint64_t position, std::uint64_t length) {
    reader.seekTo(position);
    std::string text;
    kvan::io::readArray(reader, length, text);
    // Padding goes. Tolerated: zero bytes inside, which are part of the text.
    text.resize(text.find_last_not_of('\0') + 1);
    return text;
}

}  // namespace KVAN::io::QSF
