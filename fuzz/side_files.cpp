// Any bytes as an index file and as an extra file end in entries or in a format error.

#include "native_bytes.h"
#include "qsf2sql/passes/side_file_scan.h"
#include "qsf2sql/qsflib/QuickInfoEntry.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace KVAN::io::QSF;
using namespace kvan::io;
using namespace kvan::io::qsf2sql::passes;

template <class ReadEntry>
void scanFile(const std::string& bytes, const SideFileHead& head, ReadEntry readEntry) {
    static const auto logger = kvan::logging::Logger::getLogger("kvan.io.qsf2sql.fuzz");
    try {
        const auto reader = native_bytes::readerOf(bytes);
        SideFileScan scan(*reader, head, logger);
        while (const auto entry = scan.nextEntry())
            readEntry(*reader, entry->end());
    } catch (const Qsf2SqlFileFormatError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    scanFile(bytes, g_indexFileHead,
             [](QSFBlockedReader& reader, std::uint64_t) { readRecord<FILE_CONTAINER_INDEX_ENTRY>(reader); });
    QuickInfoEntry entry;
    scanFile(bytes, g_extraFileHead, [&](QSFBlockedReader& reader, std::uint64_t end) {
        entry.Read(reader, end);
        if (entry.calibration.size() < sizeof entry.record.calibrationHead || entry.masses.size() > 255)
            std::abort();
    });
    return 0;
}
