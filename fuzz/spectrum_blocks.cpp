// Any bytes as a spectrum block end in elements that the file can hold or in an error; the reader's way of reading
// ahead makes no difference.

#include "native_bytes.h"
#include "qsf2sql/qsflib/LineSpectrumBlock.h"
#include "qsf2sql/qsflib/ScanSpectrumBlock.h"
#include "stored_compressor.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace {

using namespace KVAN::io::QSF;
using native_bytes::Access;
using native_bytes::readerOf;

std::vector<double> scanElements(const std::string& bytes, Access access,
                                 const std::shared_ptr<kvan::compression::ICompressor>& compressor) {
    ScanSpectrumBlock scan;
    std::vector<double> elements;
    try {
        scan.Read(*readerOf(bytes, access), compressor);
        elements.resize(scan.GetNumberOfEntries());
        scan.GetScanDataSave(std::span(elements));
    } catch (const kvan::io::Qsf2SqlFileFormatError&) {
        if (scan.GetElementType() != ELEMENT_UNKNOWN)
            std::abort();
    }
    if (elements.size() > bytes.size() / 4)
        std::abort();
    return elements;
}

std::uint64_t fieldPosition(const std::string& bytes, Access access, std::uint8_t field) {
    try {
        return LineSpectrumBlock::Locate(*readerOf(bytes, access), 0, field).position;
    } catch (const kvan::io::Qsf2SqlFileFormatError&) {
    } catch (const std::invalid_argument&) {
    }
    return 0;
}

bool sameBits(const std::vector<double>& first, const std::vector<double>& second) {
    return first.size() == second.size() &&
           (first.empty() || std::memcmp(first.data(), second.data(), first.size() * sizeof(double)) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const auto compressor = std::make_shared<native_bytes::StoredCompressor>();
    for (const auto& used : {std::shared_ptr<native_bytes::StoredCompressor>(), compressor})
        if (!sameBits(scanElements(bytes, Access::Scan, used), scanElements(bytes, Access::Arrays, used)))
            std::abort();
    for (std::uint8_t field = 15; field <= 22; ++field)
        if (fieldPosition(bytes, Access::Scan, field) != fieldPosition(bytes, Access::Arrays, field))
            std::abort();
    return 0;
}
