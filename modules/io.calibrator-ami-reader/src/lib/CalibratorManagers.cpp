#include "CalibratorManagers.h"

#include "UnsupportedVersionError.h"

#include <boost/throw_exception.hpp>

using archive::Stream;
using archive::Tags;
using archive::VersionNumber;

namespace {

void readManagerHead(Stream& stream, const archive::MagicNumber& tag) {
    const VersionNumber version = archive::readHead(stream, tag);
    if (version > VersionNumber(1, 1))
        BOOST_THROW_EXCEPTION(UnsupportedVersionError(version));
}

}  // namespace

void CSingleCalibratorManager::ExtractFromBlobClean(Stream& stream) {
    readManagerHead(stream, Tags::get().singleCalibratorManager);
    archive::skipBytes(stream);
}

void CMultiCalibratorManager::ExtractFromBlobClean(Stream& stream) {
    readManagerHead(stream, Tags::get().multiCalibratorManager);
    for (auto left = archive::read<std::uint32_t>(stream); left > 0; --left)
        archive::skipBytes(stream);
}
