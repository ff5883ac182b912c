#pragma once

#include "transformation/ConversionFunctors.h"
#include "transformation/policies/LawFailure.h"

#include <sysutils/vector_clones.h>

#include <cstddef>

namespace kvan::calibration::Transformation {

/// Converts `count` elements; `source` and `destination` may be one array. True if the law failed for one of them.
/// The law comes by value, so that nothing stored through `destination` can change it.
template <class Functor, class Law>
QSF_VECTOR_CLONES bool convertBlock(const Law law, const typename Functor::Source* source,
                                    typename Functor::Destination* destination, std::size_t count) {
    GatherFailure failure;
    QSF_INDEPENDENT_ELEMENTS
    for (std::size_t k = 0; k < count; ++k)
        destination[k] = Functor::convert(law, source[k], failure);
    return failure.mask != 0;
}

/// The same for the indices `first`, `first` + 1 and so on, none of which may leave 32 bits.
template <class Functor, class Law>
QSF_VECTOR_CLONES bool convertRange(const Law law, std::int32_t first, typename Functor::Destination* destination,
                                    std::int32_t count) {
    GatherFailure failure;
    for (std::int32_t k = 0; k < count; ++k)
        destination[k] = Functor::convert(law, first + k, failure);
    return failure.mask != 0;
}

}  // namespace kvan::calibration::Transformation
