#pragma once

#include "qsf2sql/qsflib/DataVectorBlock.h"
#include "qsf2sql/qsflib/element_conversion.h"

#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/SpectrumRecords.h>

#include <span>
#include <tuple>

namespace KVAN::io::QSF {

/// The profile of a spectrum: one vector of intensities, plain or compressed. One object reads many blocks and keeps
/// its memory.
class ScanSpectrumBlock {
public:
    /// Reads the block at the reader's position. Without a compressor every block is plain. Throws
    /// `Qsf2SqlFileFormatError`; the element type stays unknown then.
    void Read(kvan::io::QSFBlockedReader& reader, const std::shared_ptr<kvan::compression::ICompressor>& compressor);

    /// Code of the elements in memory; `ELEMENT_UNKNOWN` until a read has succeeded.
    ElementType GetElementType() const { return m_elementType; }

    std::uint64_t GetNumberOfEntries() const;

    /// Copies the elements to `to`, which has room for all of them, as `T` (`unsigned int`, `float` or `double`).
    template <class T>
    void GetScanDataSave(std::span<T> to) const {
        visit(*this, m_elementType, "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, unknown scan data type",
              [&]<class Stored>(const DataVectorBlock<Stored>& block) {
                  convertElements(std::span(block.Elements()), to);
              });
    }

private:
    /// Calls `visitor` with the vector that holds elements of `type`.
    template <class Self, class Visitor>
    static void visit(Self& self, std::uint8_t type, const char* failure, Visitor visitor) {
        switch (type) {
            case ELEMENT_INT32:
                return visitor(std::get<DataVectorBlock<std::int32_t>>(self.m_vectors));
            case ELEMENT_UINT32:
                return visitor(std::get<DataVectorBlock<std::uint32_t>>(self.m_vectors));
            case ELEMENT_INT64:
                return visitor(std::get<DataVectorBlock<std::int64_t>>(self.m_vectors));
            case ELEMENT_FLOAT32:
                return visitor(std::get<DataVectorBlock<float>>(self.m_vectors));
            case ELEMENT_FLOAT64:
                return visitor(std::get<DataVectorBlock<double>>(self.m_vectors));
            default:
                throwUnknownType(failure);
        }
    }

    template <class T>
    std::vector<T>& elements() {
        return std::get<DataVectorBlock<T>>(m_vectors).Elements();
    }

    [[noreturn]] static void throwUnknownType(const char* failure);

    std::tuple<DataVectorBlock<std::int32_t>, DataVectorBlock<std::uint32_t>, DataVectorBlock<std::int64_t>,
               DataVectorBlock<float>, DataVectorBlock<double>>
        m_vectors;
    ElementType m_elementType = ELEMENT_UNKNOWN;
    std::vector<unsigned char> m_packed;
};

}  // namespace KVAN::io::QSF
