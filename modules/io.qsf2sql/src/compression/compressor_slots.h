#pragma once

#include <compression/icompressor.h>
#include <qsf2sql/qsflib/SpectrumRecords.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

namespace kvan::compression {

/// What the texts of a compressor call an element type, and its code in the native files.
template <class T>
struct SlotType;
template <>
struct SlotType<double> {
    static constexpr char name[] = "double";
    static constexpr auto code = KVAN::io::QSF::ELEMENT_FLOAT64;
};
template <>
struct SlotType<float> {
    static constexpr char name[] = "float";
    static constexpr auto code = KVAN::io::QSF::ELEMENT_FLOAT32;
};
template <>
struct SlotType<std::int64_t> {
    static constexpr char name[] = "int64_t";
    static constexpr auto code = KVAN::io::QSF::ELEMENT_INT64;
};
template <>
struct SlotType<std::uint32_t> {
    static constexpr char name[] = "uint32_t";
    static constexpr auto code = KVAN::io::QSF::ELEMENT_UINT32;
};
template <>
struct SlotType<std::int32_t> {
    static constexpr char name[] = "int32_t";
    static constexpr auto code = KVAN::io::QSF::ELEMENT_INT32;
};

/// The slots of all compressors: arguments are checked here, and a type that `Coder` does not support is refused. A
/// `Coder` derives from this and has
///
///     g_id, g_name, g_description        its GUID, its name in texts of failure, a text for people
///     isSupported<T>()                   whether it codes arrays of T
///     inputName<T>()                     what its text about null to compress calls the input
///     compressArray(source, count, destination, destinationBytes)
///     decompressArray(source, destination)
///
/// of which the last two exist for the types that it supports and meet neither null nor an empty source.
template <class Coder>
class CompressorSlots : public ICompressor {
public:
    std::string GetId() const final { return Coder::g_id; }
    std::string GetDescription() const final { return Coder::g_description; }
    bool SupportsType(std::uint32_t code) const final {
        return isCodeOf<double>(code) || isCodeOf<float>(code) || isCodeOf<std::int64_t>(code) ||
               isCodeOf<std::uint32_t>(code) || isCodeOf<std::int32_t>(code);
    }

    void Compress(const double* source, unsigned count, unsigned char** to, unsigned* bytes) final {
        compress(source, count, to, bytes);
    }
    void Compress(const float* source, unsigned count, unsigned char** to, unsigned* bytes) final {
        compress(source, count, to, bytes);
    }
    void Compress(const std::int64_t* source, unsigned count, unsigned char** to, unsigned* bytes) final {
        compress(source, count, to, bytes);
    }
    void Compress(const std::uint32_t* source, unsigned count, unsigned char** to, unsigned* bytes) final {
        compress(source, count, to, bytes);
    }
    void Compress(const std::int32_t* source, unsigned count, unsigned char** to, unsigned* bytes) final {
        compress(source, count, to, bytes);
    }

    void Decompress(const std::vector<unsigned char>& source, std::vector<double>& to) final { decompress(source, to); }
    void Decompress(const std::vector<unsigned char>& source, std::vector<float>& to) final { decompress(source, to); }
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::int64_t>& to) final {
        decompress(source, to);
    }
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& to) final {
        decompress(source, to);
    }
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& to) final {
        decompress(source, to);
    }

private:
    template <class T>
    static bool isCodeOf(std::uint32_t code) {
        return Coder::template isSupported<T>() && code == SlotType<T>::code;
    }

    template <class T>
    [[noreturn]] static void refuse(const char* slot) {
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string(Coder::g_name) + " compressor: " + SlotType<T>::name +
                                                 slot + " not supported"));
    }

    template <class T>
    void compress(const T* source, unsigned count, unsigned char** to, unsigned* bytes) {
        if constexpr (Coder::template isSupported<T>()) {
            if (!source || !to || !bytes)
                BOOST_THROW_EXCEPTION(std::invalid_argument(std::string(Coder::g_name) + " compressor - invalid " +
                                                            Coder::template inputName<T>()));
            static_cast<Coder*>(this)->compressArray(source, count, to, bytes);
        } else {
            refuse<T>(" compression");
        }
    }

    template <class T>
    void decompress(const std::vector<unsigned char>& source, std::vector<T>& to) {
        if constexpr (Coder::template isSupported<T>()) {
            if (source.empty())
                BOOST_THROW_EXCEPTION(std::invalid_argument(std::string(Coder::g_name) + " compressor: " +
                                                            SlotType<T>::name + " decompression invalid source data"));
            static_cast<Coder*>(this)->decompressArray(source, to);
        } else {
            refuse<T>(" decompression");
        }
    }
};

}  // namespace kvan::compression
