#pragma once

#include <qsf2sql/array_id.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <cstdint>

namespace KVAN::io::QSF {

/// The peak list of a spectrum: parallel vectors, never compressed, of which one at a time is looked up. Holds no
/// elements; the caller reads them from the reader.
class LineSpectrumBlock {
public:
    /// Reads the heads of the block at the reader's position and moves the reader to the first element of the field.
    /// False if the block has no such field. Throws `Qsf2SqlFileFormatError`, and `std::invalid_argument` "Requested
    /// field ID out of range: #" and the number for a field outside 16 to 21.
    bool ReadHeaderAndSeekToFieldData(kvan::io::QSFBlockedReader& reader, std::uint8_t field);

    /// Of the elements of the field.
    kvan::io::qsf2sql_detail::NativeType GetNativeType() const { return m_nativeType; }
    /// Elements that the field claims to have; 0 if it does not exist.
    std::uint32_t GetNumberOfEntries() const { return m_entryCount; }
    /// Position in the file of the field's first element; 0 if it does not exist.
    std::uint64_t GetDataPosition() const { return m_dataPosition; }

private:
    template <class Extended>
    bool seekToField(kvan::io::QSFBlockedReader& reader, std::uint8_t field);

    kvan::io::qsf2sql_detail::NativeType m_nativeType = kvan::io::qsf2sql_detail::NativeType::Absent;
    std::uint32_t m_entryCount = 0;
    std::uint64_t m_dataPosition = 0;
};

}  // namespace KVAN::io::QSF
