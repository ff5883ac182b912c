#pragma once

#include <binaryio/version_number.h>

#include <stdexcept>
#include <string>

namespace kvan::io::ami {

/// A failure of the archive's own; its text says so.
class CACException : public std::runtime_error {
public:
    explicit CACException(const std::string& text) : std::runtime_error("CACException " + text) {}
};

/// A record in a version that its reader does not know.
class UnsupportedVersionError : public CACException {
public:
    explicit UnsupportedVersionError(const binaryio::VersionNumber& version)
        : CACException("Unsupported VersionNumber " + version.toString()) {}
};

}  // namespace kvan::io::ami
