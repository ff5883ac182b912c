#include "CLockMassCalibrationMgr.h"

#include "UnsupportedVersionError.h"

#include <binaryio/packed_record.h>
#include <logger/logger.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <utility>

// One entry a spectrum, in the order of the spectra: a calibrator in one of three forms by its version (text, record,
// blob), or none. An entry says its size, so what stands in it is read from a stream of its own, and bytes after it in
// the entry are tolerated. Entries of later versions may repeat the blob as a text, within the entry or after it.
namespace kvan::io::ami {

namespace {

/// An entry has its full tag, or the short one of its class.
VersionNumber readEntryHead(Stream& stream) {
    const MagicNumber found(read<std::uint32_t>(stream));
    if (found != Tags::get().shortLockMassCalibrationData)
        Tags::get().lockMassCalibrationData.assertMagicIs(found.getValue());
    const auto version = read<VersionNumber>(stream);
    if (version < VersionNumber(1, 0) || version > VersionNumber(1, 3))
        BOOST_THROW_EXCEPTION(UnsupportedVersionError(version));
    return version;
}

#pragma pack(push, 1)
struct StringHead {
    std::uint32_t tag;    // 0
    std::uint32_t count;  // 4  of the bytes that follow
};
#pragma pack(pop)
KVAN_PACKED_RECORD(StringHead, 8, (tag, 0), (count, 4));

/// The length of the blob that begins `bytes`: a string record may fill the rest of them. Nothing tells where the blob
/// ends, so each place is tried, the first one first.
std::size_t blobLength(const Bytes& bytes) {
    binaryio::IHeapBinary stream(bytes.data(), bytes.size());
    for (std::size_t end = 0; bytes.size() - end >= sizeof(StringHead); ++end) {
        stream.doSetReadPos(binaryio::origin::Begin, static_cast<std::int64_t>(end));
        const auto head = binaryio::readRecord<StringHead>(stream);
        if (isStringTag(MagicNumber(head.tag)) && head.count == bytes.size() - end - sizeof head)
            return end;
    }
    return bytes.size();
}

/// What the bytes of an entry hold. A record in them ends where they end, and may end earlier.
TransformatorPtr readEntry(Bytes bytes, const VersionNumber& version, std::uint32_t streamFlags) {
    if (version >= VersionNumber(1, 2)) {
        bytes.resize(blobLength(bytes));
        return DeserializeBlob(bytes);
    }
    // Containers in the entry count as those around it do.
    binaryio::IHeapBinary entry(bytes.data(), bytes.size());
    entry.setFlags(streamFlags);
    if (version == VersionNumber(1, 0))
        return DeserializeText(read<std::string>(entry));
    TransformatorPtr calibrator;
    DeserializeReferenceCalibrator(entry, calibrator);
    return calibrator;
}

}  // namespace

void CReferenceMassList::ExtractFromBlob(Stream& stream) {
    const VersionNumber version = readHead(stream, Tags::get().referenceMassList, {{1, 0}, {1, 1}});
    stream >> name >> comment;
    for (auto left = read<std::uint32_t>(stream); left > 0; --left) {
        Entry& entry = entries.emplace_back();
        stream >> entry.name >> entry.mass >> entry.charge;
        if (version >= VersionNumber(1, 1))
            stream >> entry.comment;
    }
}

void CQAMethodMSLockMassRecalibrationParams::ExtractFromBlob(Stream& stream) {
    const VersionNumber version = readHead(stream, Tags::get().lockMassParams, {{0, 1}, {0, 2}, {0, 3}, {1, 0}});
    read<double>(stream);
    masses.ExtractFromBlob(stream);
    if (version >= VersionNumber(0, 2) && version <= VersionNumber(0, 3))
        read<bool>(stream);
    if (version >= VersionNumber(0, 3)) {
        read<double>(stream);
        read<std::uint32_t>(stream);
    }
}

void CLockMassCalibrationMgr::CCalibrationData::ExtractFromBlob(Stream& stream) {
    const VersionNumber version = readEntryHead(stream);
    Bytes bytes = readBytes(stream);
    if (!bytes.empty())
        calibrator = readEntry(std::move(bytes), version, stream.getFlags());
    if (version >= VersionNumber(1, 2) && isStringNext(stream))
        skipString(stream);  // the blob once more, as text
}

void CLockMassCalibrationMgr::ExtractFromBlob(Stream& stream) {
    static const auto s_logger = logging::Logger::getLogger("kvan.io.amiReader.lockMassCalibrationMgr");
    const VersionNumber version = readHead(stream, Tags::get().lockMassCalibrationMgr, {{1, 0}, {1, 1}});
    const auto hasParams = read<bool>(stream);
    KVAN_LOG(s_logger, DEBUG) << "version = " << version.toString() << ", flag = " << hasParams;
    if (hasParams) {
        m_params = std::make_shared<CQAMethodMSLockMassRecalibrationParams>();
        m_params->ExtractFromBlob(stream);
    }
    for (std::uint64_t left = readArrayHead(stream); left > 0; --left)
        m_calibrators.emplace_back().ExtractFromBlob(stream);
    if (version >= VersionNumber(1, 1))
        m_stati.ExtractFromBlob(stream);
}

const TransformatorPtr& CLockMassCalibrationMgr::GetCalibrationPtr(std::uint64_t spectrum) const {
    if (spectrum >= m_calibrators.size())
        BOOST_THROW_EXCEPTION(std::runtime_error("Spectrum number out of range."));
    return m_calibrators[spectrum].calibrator;
}

}  // namespace kvan::io::ami
