#include "CalibratorManagers.h"

#include "UnsupportedVersionError.h"

#include <boost/throw_exception.hpp>

// Calibrators of the acquisition itself, in archives up to version 1.1. The native file has them for each spectrum, so
// their bytes are only stepped over.
namespace kvan::io::ami {

namespace {

void readManagerHead(Stream& stream, const MagicNumber& tag) {
    const VersionNumber version = readHead(stream, tag);
    if (version > VersionNumber(1, 1))
        BOOST_THROW_EXCEPTION(UnsupportedVersionError(version));
}

}  // namespace

void CSingleCalibratorManager::ExtractFromBlobClean(Stream& stream) {
    readManagerHead(stream, Tags::get().singleCalibratorManager);
    skipBytes(stream);
}

void CMultiCalibratorManager::ExtractFromBlobClean(Stream& stream) {
    readManagerHead(stream, Tags::get().multiCalibratorManager);
    for (auto left = read<std::uint32_t>(stream); left > 0; --left)
        skipBytes(stream);
}

}  // namespace kvan::io::ami
