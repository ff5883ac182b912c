#pragma once

#include "compression/compressor_slots.h"

#include <binaryio/heap_binary.h>

#include <memory>

namespace kvan::compression {

/// Arrays of 32-bit integers or floats as one zlib stream (RFC 1950) of their bytes, little-endian, with nothing of our
/// own around it. Streams of any level are read; those written here hold the bytes as they are (level 0).
///
/// A stream that is cut off gives the elements that its bytes hold, and bytes that make no whole element are dropped. A
/// damaged one throws `binaryio::BinaryFailure` with zlib's message.
class CompressZLibImpl final : public CompressorSlots<CompressZLibImpl> {
public:
    static constexpr char g_id[] = "6BB2E64A-27A0-4575-A66A-4E312C8B9AD7";
    static constexpr char g_name[] = "ZLib";
    static constexpr char g_description[] = "ZLib based compressor";

    CompressZLibImpl();
    ~CompressZLibImpl() override;

    template <class T>
    static constexpr bool isSupported() {
        return sizeof(T) == 4;
    }
    template <class T>
    static constexpr const char* inputName() {
        return "compression input";
    }

    /// For the types of `isSupported`.
    template <class T>
    void compressArray(const T* source, unsigned count, unsigned char** destination, unsigned* destinationBytes);
    template <class T>
    void decompressArray(const std::vector<unsigned char>& source, std::vector<T>& destination);

private:
    class Inflater;

    binaryio::OHeapBinary m_output;
    std::unique_ptr<Inflater> m_inflater;
};

}  // namespace kvan::compression
