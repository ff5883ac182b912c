#pragma once

#include "qsf2sql/element_conversion.h"
#include "qsf2sql/qsflib/DataVectorBlock.h"
#include "qsf2sql/qsflib/SpectrumRecords.h"

#include <algorithm>
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

    /// Calls `visitor` with the elements in memory, a vector of their own type.
    template <class Visitor>
    void VisitElements(Visitor&& visitor) const {
        visit(*this, m_elementType, "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, unknown scan data type",
              [&](const auto& block) { visitor(block.GetElements()); });
    }

    /// Copies the elements to `destination` as `T`: `unsigned int`, `float` or `double`.
    template <class T>
    void GetScanDataSave(std::vector<T>& destination) const {
        VisitElements([&]<class Stored>(const std::vector<Stored>& elements) {
            destination.resize(elements.size());
            std::transform(elements.begin(), elements.end(), destination.begin(), kvan::io::convertElement<T, Stored>);
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

    [[noreturn]] static void throwUnknownType(const char* failure);

    std::tuple<DataVectorBlock<std::int32_t>, DataVectorBlock<std::uint32_t>, DataVectorBlock<std::int64_t>,
               DataVectorBlock<float>, DataVectorBlock<double>>
        m_vectors;
    ElementType m_elementType = ELEMENT_UNKNOWN;
    std::vector<unsigned char> m_packed;
};

}  // namespace KVAN::io::QSF
