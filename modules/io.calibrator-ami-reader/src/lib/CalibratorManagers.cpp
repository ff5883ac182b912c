#include "CalibratorManagers.h"

#include "UnsupportedVersionError.h"

#include <boost/throw_exception.hpp>

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
