#pragma once

#include <compression/compressor_registry.h>
#include <test-support/support.h>

#include <boost/uuid/string_generator.hpp>

namespace kvan::compression {

using test::Bytes;
using test::failureOf;

inline std::shared_ptr<ICompressor> compressor(const char* id) {
    return getCompressor(boost::uuids::string_generator()(id));
}

template <class T>
Bytes packed(ICompressor& compressor, const std::vector<T>& elements) {
    const T none{};
    unsigned char* bytes = nullptr;
    unsigned size = 0;
    compressor.Compress(elements.empty() ? &none : elements.data(), static_cast<unsigned>(elements.size()), &bytes,
                        &size);
    return {bytes, bytes + size};
}

template <class T>
std::vector<T> unpacked(ICompressor& compressor, const Bytes& bytes) {
    std::vector<T> elements(3, T(77));
    compressor.Decompress(bytes, elements);
    return elements;
}

}  // namespace kvan::compression
