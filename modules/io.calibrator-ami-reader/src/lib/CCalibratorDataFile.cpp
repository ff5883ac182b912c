#include "CCalibratorDataFile.h"

#include "DeserializeReferenceCalibrator.h"

#include <binaryio/packed_record.h>
#include <logger/logger.h>
#include <sysutils/platform.h>

#include <array>
#include <bit>
#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <span>
#include <stdexcept>

// The frame of the file. It is looked at before it is opened, so that a pipe cannot stop the reader. The length is a
// claim: it is held against the size of the file before memory is taken. Tolerated: bytes after the payload, and the
// second number of the head, whatever they are.
namespace kvan::io::ami {

namespace fs = boost::filesystem;

namespace {

constexpr std::uint32_t g_untestedVersion = 1;

#pragma pack(push, 1)
/// The payload follows at once.
struct ArchiveFileHead {
    std::uint32_t version;        // 0  of the file
    std::uint32_t unread4;        // 4
    std::uint32_t payloadLength;  // 8  in bytes; 0 without a payload
};
#pragma pack(pop)
KVAN_PACKED_RECORD(ArchiveFileHead, 12, (version, 0), (payloadLength, 8));

[[noreturn]] void refuse(const fs::path& path, const char* reason) {
    BOOST_THROW_EXCEPTION(std::runtime_error("Specified AMI file '" + sys::pathToUtf8(path) + "' " + reason));
}

/// Reads all of `to` at `offset`; false where the file ends before that or cannot be read.
bool readWhole(sys::PositionedFile& file, std::uint64_t offset, std::span<unsigned char> to) {
    const auto count = static_cast<std::int64_t>(to.size());
    return file.readAt(to.data(), count, offset) == count;
}

/// The record at `offset`; refuses a file that ends inside it.
template <class Record>
Record readRecord(sys::PositionedFile& file, std::uint64_t offset, const fs::path& path) {
    std::array<unsigned char, sizeof(Record)> bytes;
    if (!readWhole(file, offset, bytes))
        refuse(path, "ends inside its head.");
    return std::bit_cast<Record>(bytes);
}

/// The `count` bytes at `offset`; a count that the file does not hold is refused before it takes memory.
Bytes readArray(sys::PositionedFile& file, std::uint64_t offset, std::uint64_t count, const fs::path& path) {
    if (file.size() < offset + count)
        refuse(path, "ends inside its payload.");
    Bytes bytes(count);
    if (!readWhole(file, offset, bytes))
        refuse(path, "couldn't be read.");
    return bytes;
}

std::unique_ptr<sys::PositionedFile> openFile(const fs::path& path) {
    boost::system::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    if (status.type() == fs::file_not_found)
        refuse(path, "doesn't exist.");
    if (fs::exists(status) && !fs::is_regular_file(status))
        refuse(path, "is not a regular file (expecting name of Calibrator.ami).");
    auto file = sys::PositionedFile::open(path);
    if (!file)
        refuse(path, "couldn't be opened.");
    return file;
}

}  // namespace

CCalibratorDataFile::CCalibratorDataFile(const fs::path& path) {
    const auto file = openFile(path);
    const auto head = readRecord<ArchiveFileHead>(*file, 0, path);
    m_version = head.version;
    const auto logger = logging::Logger::getLogger("kvan.io.amiReader");
    KVAN_LOG(logger, DEBUG) << "AMI file version = " << m_version;
    if (m_version == g_untestedVersion)
        ThrowUntestedCodePath();
    // No failure: the reader has nothing then, which its first use says.
    if (m_version != ReadVersion)
        return;
    m_payload = readArray(*file, sizeof head, head.payloadLength, path);
}

}  // namespace kvan::io::ami
