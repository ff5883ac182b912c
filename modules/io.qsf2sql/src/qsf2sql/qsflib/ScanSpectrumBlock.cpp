#include "qsf2sql/qsflib/ScanSpectrumBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

using kvan::io::readArray;
using kvan::io::readRecord;

// Comes in: the head at the reader's position, then the vector. Byte 22 decides with the compressor: a code that it
// knows means that the bytes are its, and the element type is that code; any other means plain elements of the type at
// byte 20, also in a file with a compressor. The count is one of bytes there, of elements here.
//
// The type is unknown while a read is under way and stays so after a fault, whatever the vectors hold by then: whoever
// asks a block that could not be read gets the words for an unknown type, never half an array.
void ScanSpectrumBlock::Read(kvan::io::QSFBlockedReader& reader,
                             const std::shared_ptr<kvan::compression::ICompressor>& compressor) {
    m_elementType = ELEMENT_UNKNOWN;
    const auto header = readRecord<ScanSpectrumHeader>(reader);
    CQSFUtil::BlockVerify(header.resource, RESTYPE_SCAN_SPECTRUM, reader.tell(), g_version);
    if (compressor && compressor->SupportsType(header.packedType)) {
        readArray(reader, header.count, m_packed);
        visit(*this, header.packedType, "DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities",
              [&](auto& block) { block.AcceptForDecompression(m_packed, compressor); });
        m_elementType = static_cast<ElementType>(header.packedType);
        return;
    }
    // Tolerated: any size of an element at byte 21; the type alone says it.
    switch (header.plainType) {
        case ELEMENT_INT32:
            readArray(reader, header.count, elements<std::int32_t>());
            break;
        case ELEMENT_UINT32:
            readArray(reader, header.count, elements<std::uint32_t>());
            break;
        case ELEMENT_INT64:
            readArray(reader, header.count, elements<std::int64_t>());
            break;
        case ELEMENT_FLOAT32:
            readArray(reader, header.count, elements<float>());
            break;
        case ELEMENT_FLOAT64:
            readArray(reader, header.count, elements<double>());
            break;
        default:
            throwUnknownType(
                "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities");
    }
    m_elementType = static_cast<ElementType>(header.plainType);
}

std::uint64_t ScanSpectrumBlock::GetNumberOfEntries() const {
    std::uint64_t count = 0;
    visit(*this, m_elementType,
          "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, ScanSpectrumBlock::GetNumberOfEntries",
          [&](const auto& block) { count = block.Elements().size(); });
    return count;
}

void ScanSpectrumBlock::throwUnknownType(const char* failure) {
    BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError(failure));
}

}  // namespace KVAN::io::QSF
