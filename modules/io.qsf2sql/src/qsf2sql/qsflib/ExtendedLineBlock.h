#pragma once

#include <qsf2sql/array_id.h>
#include <qsf2sql/qsflib/SpectrumRecords.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace KVAN::io::QSF {

inline constexpr std::uint8_t g_firstLineField = 16;
inline constexpr std::uint8_t g_lastLineField = 21;

/// Where the fields of a line block lie, and of what type they are: `TIndex` for field 16, the line indices, `TValue`
/// for the others.
template <class TIndex, class TValue>
class ExtendedLineBlock {
public:
    using Header = ExtendedLineHeader<TValue>;

    /// `start` is the place in the file of `header`, from which its offsets count; `count` is the length of every
    /// field. Throws `std::invalid_argument` "Requested field ID out of range: #" and the number for a field outside 16
    /// to 21.
    static kvan::io::StoredArray Locate(const Header& header, std::uint64_t start, std::uint32_t count,
                                        std::uint8_t field) {
        if (field < g_firstLineField || field > g_lastLineField)
            BOOST_THROW_EXCEPTION(std::invalid_argument("Requested field ID out of range: #" + std::to_string(field)));
        // Tolerated: an offset into the heads or beyond the block; only a read beyond the file fails.
        const std::uint32_t offset = header.fieldOffset[field - g_firstLineField];
        if (offset == 0)
            return {};
        return {field == g_firstLineField ? nativeTypeOf<TIndex> : nativeTypeOf<TValue>, count, start + offset};
    }

private:
    template <class T>
    static constexpr auto nativeTypeOf = std::is_same_v<T, double> ? kvan::io::qsf2sql_detail::NativeType::Double
                                                                   : kvan::io::qsf2sql_detail::NativeType::Float;
};

}  // namespace KVAN::io::QSF
