#include "CCalibratorDataFile.h"

#include "DeserializeReferenceCalibrator.h"

#include <logger/logger.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::io::ami {

namespace fs = boost::filesystem;

namespace {

constexpr std::uint32_t g_untestedVersion = 1;

[[noreturn]] void refuse(const fs::path& path, const char* reason) {
    BOOST_THROW_EXCEPTION(std::runtime_error("Specified AMI file '" + sys::pathToUtf8(path) + "' " + reason));
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

bool readAt(sys::PositionedFile& file, void* destination, std::uint32_t bytes, std::uint64_t offset) {
    return file.readAt(static_cast<char*>(destination), bytes, offset) == bytes;
}

}  // namespace

CCalibratorDataFile::CCalibratorDataFile(const fs::path& path) {
    const auto file = openFile(path);
    std::uint32_t head[3];
    if (!readAt(*file, head, sizeof head, 0))
        refuse(path, "ends inside its head.");
    m_version = head[0];
    const std::uint32_t length = head[2];
    const auto logger = logging::Logger::getLogger("kvan.io.amiReader");
    KVAN_LOG(logger, DEBUG) << "AMI file version = " << m_version;
    if (m_version == g_untestedVersion)
        ThrowUntestedCodePath();
    if (m_version != ReadVersion)
        return;
    if (file->size() < sizeof head + std::uint64_t{length})
        refuse(path, "ends inside its payload.");
    m_payload.resize(length);
    if (!readAt(*file, m_payload.data(), length, sizeof head))
        refuse(path, "couldn't be read.");
}

}  // namespace kvan::io::ami
