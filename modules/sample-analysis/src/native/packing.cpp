#include "native/element_types.h"

#include <compression/compressor_registry.h>
#include <sample-analysis/packing.h>

#include <boost/throw_exception.hpp>
#include <boost/uuid/string_generator.hpp>
#include <stdexcept>

// Profiles are packed by the compressors that the library unpacks with: a sample shows that both sides of a coder
// agree, not that the bytes are right, which the tests of the coders do. What a compressor refuses, such as floats for
// the integer coders, comes out in its own words.

namespace kvan::sample::native {

namespace {

template <class T>
ScanData packed(compression::ICompressor& compressor, const std::vector<T>& elements) {
    // A compressor wants an address also for no elements. Its bytes stay its own until the next call, so they are
    // copied.
    const T none{};
    unsigned char* bytes = nullptr;
    unsigned size = 0;
    compressor.Compress(elements.empty() ? &none : elements.data(), static_cast<unsigned>(elements.size()), &bytes,
                        &size);
    return PackedVector{elementTypeOf(T{}), Bytes(bytes, bytes + size)};
}

ScanData packed(compression::ICompressor&, const PackedVector& vector) {
    return vector;
}

}  // namespace

const char* guidOf(Compressor compressor) {
    switch (compressor) {
        case Compressor::Vlc:
            return "4F1EA0CB-5A6A-43ED-9562-D6D873034577";
        case Compressor::Vli2:
            return "7F88E97F-2038-40ba-8F3A-FCA9A9719569";
        case Compressor::ZLib:
            return "6BB2E64A-27A0-4575-A66A-4E312C8B9AD7";
        case Compressor::None:
            break;
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument("No compressor, no GUID."));
}

ProfilePacker::ProfilePacker(Compressor compressor) {
    if (compressor != Compressor::None)
        m_compressor = compression::getCompressor(boost::uuids::string_generator()(guidOf(compressor)));
}

ScanData ProfilePacker::pack(const ScanData& profile) {
    if (!m_compressor)
        return profile;
    return std::visit([this](const auto& elements) { return packed(*m_compressor, elements); }, profile);
}

}  // namespace kvan::sample::native
