#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <type_traits>

namespace KVAN::io::QSF {

/// An element of a native array as another type, the way all arrays are converted on reading. Floating point becomes
/// unsigned by truncation toward zero to 64 bits, signed, of which the low 32 are kept; what does not fit 64 bits, and
/// NaN, gives 0, the low half of what the truncating instruction of x86-64 answers. Everything else is a plain cast.
template <class To, class From>
To convertElement(From value) {
    if constexpr (std::is_floating_point_v<From> && std::is_same_v<To, std::uint32_t>) {
        constexpr From limit = 9223372036854775808.0;  // 2^63
        return value >= -limit && value < limit ? static_cast<std::uint32_t>(static_cast<std::int64_t>(value)) : 0;
    } else {
        return static_cast<To>(value);
    }
}

/// Copies a native array to `to`, which has room for it, as `To`.
template <class To, class From>
void convertElements(std::span<const From> elements, std::span<To> to) {
    if constexpr (std::is_same_v<To, From>)
        std::copy(elements.begin(), elements.end(), to.begin());
    else
        std::transform(elements.begin(), elements.end(), to.begin(), convertElement<To, From>);
}

}  // namespace KVAN::io::QSF
