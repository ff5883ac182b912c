#include "CCalibrationStati.h"

#include "DeserializeReferenceCalibrator.h"

#include <logger/logger.h>

// The history of a list: which spectra were calibrated when, with which masses and what deviations. No calibrator
// depends on it, but records have no lengths, so each one must be read in its version's layout to find what follows.
// Numbers nobody asks for are stepped over, with their claims checked; a tag or version that is not known ends the
// archive.
namespace kvan::io::ami {

namespace {

/// `CalibrationData`: reference masses and what was measured for them.
void skipCalibrationData(Stream& stream) {
    const VersionNumber version = readHead(stream, Tags::get().calibrationData, {{0, 1}, {0, 2}, {0, 3}, {1, 0}});
    skipDoubleArrays(stream, 4);
    if (version >= VersionNumber(0, 3))
        skipArray(stream, sizeof(float));
    skipDoubleArrays(stream, 1);
    read<double>(stream);
    if (version >= VersionNumber(1, 0)) {
        read<double>(stream);
        read<double>(stream);
    }
}

/// `CalibrationQualityCheck`: a transformator, and the deviations that were found with it.
void skipCalibrationQualityCheck(Stream& stream) {
    const VersionNumber version = readHead(stream, Tags::get().calibrationQualityCheck, {{0, 1}, {0, 2}});
    if (version == VersionNumber(0, 1))
        skipString(stream);
    else
        skipBytes(stream);
    skipDoubleArrays(stream, 2);
    read<double>(stream);
    skipDoubleArrays(stream, 4);
}

}  // namespace

void CDateTimeTZI::ExtractFromBlob(Stream& stream) {
    readHead(stream, Tags::get().dateTimeTZI);
    readHead(stream, Tags::get().dateTime);
    stream >> year >> month >> day >> hour >> minute >> milliseconds;
    stream >> hasZone >> zone;
}

void CCalibrationStatus::ExtractFromBlob(Stream& stream) {
    static const auto s_logger = logging::Logger::getLogger("kvan.io.amiReader.calibrationStatus");
    const VersionNumber version =
        readHead(stream, Tags::get().calibrationStatus, {{0, 1}, {0, 2}, {0, 3}, {1, 0}, {1, 1}, {1, 2}, {1, 3}});
    KVAN_LOG(s_logger, DEBUG) << "version = " << version.toString();
    if (version >= VersionNumber(0, 3))
        stream >> id;
    stream >> description >> spectrumDescription;
    skipArray(stream, sizeof(std::uint32_t));  // Ids of the spectra
    // Layouts that no known file has; their rest is refused rather than guessed.
    if (version <= VersionNumber(1, 0))
        ThrowUntestedCodePath();
    skipBytes(stream);  // two transformators
    skipBytes(stream);
    stream >> chromatogramId >> chromatogramDescription;
    for (std::uint64_t left = readArrayHead(stream); left > 0; --left)
        skipCalibrationData(stream);
    started.ExtractFromBlob(stream);
    if (version >= VersionNumber(1, 2))
        finished.ExtractFromBlob(stream);
    polarity = EPolarity{read<std::uint32_t>(stream)};
    stream >> msmsType;
    KVAN_LOG(s_logger, DEBUG) << " polarity = " << static_cast<std::uint32_t>(polarity) << ", msmstype = " << msmsType;
    skipCalibrationQualityCheck(stream);
    // Tolerated: blobs and texts in them that are no transformators.
    SkipReferenceCalibrator(stream);
    SkipReferenceCalibrator(stream);
    if (version >= VersionNumber(1, 3)) {
        skipString(stream);
        skipString(stream);
    }
}

void CCalibrationContainer::ExtractFromBlob(Stream& stream) {
    readHead(stream, Tags::get().calibrationStati, {{0, 1}});
    for (std::uint64_t left = readArrayHead(stream); left > 0; --left)
        stati.emplace_back().ExtractFromBlob(stream);
}

}  // namespace kvan::io::ami
