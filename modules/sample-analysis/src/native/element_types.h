#pragma once

#include <qsf2sql/qsflib/SpectrumRecords.h>

namespace kvan::sample::native {

constexpr KVAN::io::QSF::ElementType elementTypeOf(std::int32_t) {
    return KVAN::io::QSF::ELEMENT_INT32;
}
constexpr KVAN::io::QSF::ElementType elementTypeOf(std::uint32_t) {
    return KVAN::io::QSF::ELEMENT_UINT32;
}
constexpr KVAN::io::QSF::ElementType elementTypeOf(std::int64_t) {
    return KVAN::io::QSF::ELEMENT_INT64;
}
constexpr KVAN::io::QSF::ElementType elementTypeOf(float) {
    return KVAN::io::QSF::ELEMENT_FLOAT32;
}
constexpr KVAN::io::QSF::ElementType elementTypeOf(double) {
    return KVAN::io::QSF::ELEMENT_FLOAT64;
}

}  // namespace kvan::sample::native
