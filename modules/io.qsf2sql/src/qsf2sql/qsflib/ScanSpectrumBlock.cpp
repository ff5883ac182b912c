#include "qsf2sql/qsflib/ScanSpectrumBlock.h"

#include "qsf2sql/qsflib/QSFUtil.h"

namespace KVAN::io::QSF {

void ScanSpectrumBlock::Read(kvan::io::QSFBlockedReader& reader,
                             const std::shared_ptr<kvan::compression::ICompressor>& compressor) {
    m_elementType = ELEMENT_UNKNOWN;
    const auto header = CQSFUtil::ReadHeader<ScanSpectrumHeader>(reader, RESTYPE_SCAN_SPECTRUM);
    const bool isPacked = compressor && compressor->SupportsType(header.packedType);
    const std::uint8_t type = isPacked ? header.packedType : header.plainType;
    if (isPacked) {
        reader.requireAvailable(header.count, 1);
        m_packed.resize(header.count);
        reader.read(reinterpret_cast<char*>(m_packed.data()), header.count);
        visit(*this, type, "DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities",
              [&](auto& block) { block.AcceptForDecompression(m_packed, compressor); });
    } else {
        visit(*this, type,
              "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities",
              [&](auto& block) { block.Read(reader, header.count); });
    }
    m_elementType = static_cast<ElementType>(type);
}

std::uint64_t ScanSpectrumBlock::GetNumberOfEntries() const {
    std::uint64_t count = 0;
    visit(*this, m_elementType,
          "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, ScanSpectrumBlock::GetNumberOfEntries",
          [&](const auto& block) { count = block.GetElements().size(); });
    return count;
}

void ScanSpectrumBlock::throwUnknownType(const char* failure) {
    BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError(failure));
}

}  // namespace KVAN::io::QSF
