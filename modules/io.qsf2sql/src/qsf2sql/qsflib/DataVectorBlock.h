#pragma once

#include <compression/icompressor.h>
#include <qsf2sql/errors.h>
#include <qsf2sql/qsf_blocked_reader.h>

#include <boost/throw_exception.hpp>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace KVAN::io::QSF {

/// A vector of a native file in memory. Grows to the largest one that it has held and keeps that memory.
template <class T>
class DataVectorBlock {
public:
    /// Reads `count` elements at the reader's position.
    void Read(kvan::io::QSFBlockedReader& reader, std::uint32_t count) {
        reader.requireAvailable(count, sizeof(T));
        m_elements.resize(count);
        reader.read(reinterpret_cast<char*>(m_elements.data()), static_cast<std::int64_t>(count * sizeof(T)));
    }

    /// Takes the elements that the compressor makes of `bytes`. Throws `Qsf2SqlFileFormatError` "Decompression failed;
    /// std::exception::what() = " and the compressor's text.
    void AcceptForDecompression(const std::vector<unsigned char>& bytes,
                                const std::shared_ptr<kvan::compression::ICompressor>& compressor) {
        try {
            compressor->Decompress(bytes, m_elements);
        } catch (const std::exception& failure) {
            BOOST_THROW_EXCEPTION(kvan::io::Qsf2SqlFileFormatError(
                std::string("Decompression failed; std::exception::what() = ") + failure.what()));
        }
    }

    const std::vector<T>& GetElements() const { return m_elements; }

private:
    std::vector<T> m_elements;
};

}  // namespace KVAN::io::QSF
