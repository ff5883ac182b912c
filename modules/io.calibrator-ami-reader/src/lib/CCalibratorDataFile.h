#pragma once

#include "archive_framing.h"

#include <sysutils/boost_fwd.h>

#include <cstdint>

namespace kvan::io::ami {

/// The file around an archive: three 32-bit numbers - the file version, one that is not looked at, the length of the
/// payload - and the payload. Bytes after it are not looked at.
class CCalibratorDataFile {
public:
    static constexpr std::uint32_t ReadVersion = 2;

    /// Reads the file, the payload only of version 2. Throws `std::runtime_error` for a path that leads to no regular
    /// file, without opening it, for a file that is shorter than it says, and "Untested code path." for version 1.
    explicit CCalibratorDataFile(const boost::filesystem::path& path);

    std::uint32_t version() const { return m_version; }
    /// Empty unless the version is `ReadVersion`.
    const Bytes& payload() const { return m_payload; }

private:
    std::uint32_t m_version = 0;
    Bytes m_payload;
};

}  // namespace kvan::io::ami
