#pragma once

#include <compression/compressor_registry.h>

#include <boost/algorithm/hex.hpp>
#include <boost/uuid/string_generator.hpp>
#include <exception>
#include <string>
#include <vector>

namespace kvan::compression {

using Bytes = std::vector<unsigned char>;

inline std::shared_ptr<ICompressor> compressor(const char* id) {
    return getCompressor(boost::uuids::string_generator()(id));
}

inline Bytes hex(std::string text) {
    std::erase(text, ' ');
    Bytes bytes;
    boost::algorithm::unhex(text, std::back_inserter(bytes));
    return bytes;
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

template <class Action>
std::string failureOf(Action action) {
    try {
        action();
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return {};
}

}  // namespace kvan::compression
