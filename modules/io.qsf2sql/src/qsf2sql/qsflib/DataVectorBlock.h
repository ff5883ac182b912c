#pragma once

#include <compression/icompressor.h>
#include <qsf2sql/errors.h>

#include <boost/throw_exception.hpp>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace KVAN::io::QSF {

/// A vector of a native file in memory. Grows to the largest one that it has held and keeps that memory.
template <class T>
class DataVectorBlock {
public:
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

    /// To be filled.
    std::vector<T>& Elements() { return m_elements; }
    const std::vector<T>& Elements() const { return m_elements; }

private:
    std::vector<T> m_elements;
};

}  // namespace KVAN::io::QSF
