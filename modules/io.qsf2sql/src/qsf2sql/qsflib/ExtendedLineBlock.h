#pragma once

#include <qsf2sql/array_id.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/qsflib/SpectrumRecords.h>

#include <type_traits>

namespace KVAN::io::QSF {

inline constexpr std::uint8_t g_firstLineField = 16;
inline constexpr std::uint8_t g_lastLineField = 21;

/// Where the fields of a line block lie, and of what type they are: `TIndex` for field 16, the line indices, `TValue`
/// for the others. `field` is from 16 to 21 throughout.
template <class TIndex, class TValue>
class ExtendedLineBlock {
public:
    void Read(kvan::io::QSFBlockedReader& reader) {
        m_start = reader.tell();
        m_header = kvan::io::readRecord<ExtendedLineHeader<TValue>>(reader);
    }

    /// Moves the reader to the field's first element; false, and the reader untouched, if the block has no such field.
    bool SeekTo(kvan::io::QSFBlockedReader& reader, std::uint8_t field) const {
        const std::uint32_t offset = m_header.fieldOffset[field - g_firstLineField];
        if (offset == 0)
            return false;
        reader.seekTo(m_start + offset);
        return true;
    }

    static constexpr kvan::io::qsf2sql_detail::NativeType GetNativeType(std::uint8_t field) {
        return field == g_firstLineField ? nativeTypeOf<TIndex> : nativeTypeOf<TValue>;
    }

private:
    template <class T>
    static constexpr auto nativeTypeOf = std::is_same_v<T, double> ? kvan::io::qsf2sql_detail::NativeType::Double
                                                                   : kvan::io::qsf2sql_detail::NativeType::Float;

    std::uint64_t m_start = 0;
    ExtendedLineHeader<TValue> m_header{};
};

}  // namespace KVAN::io::QSF
