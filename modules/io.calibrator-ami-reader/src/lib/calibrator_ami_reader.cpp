#include "CCalibratorDataFile.h"
#include "CDataFileCalibrationOrganizer.h"

#include <calibrator-ami-reader/calibrator_ami_reader.h>

// The public face. An archive is read whole or not at all: a failure is logged and leaves a reader that has nothing,
// like one that was never opened. Tolerated: a file version that is neither 1 nor 2 opens, holds nothing, and fails
// when it is asked.
namespace kvan::io {

namespace {

/// Containers of the archive count their elements in 32 bits.
constexpr std::uint32_t g_streamFlags = 1;

void readArchive(const ami::Bytes& payload, ami::CDataFileCalibrationOrganizer& organizer) {
    binaryio::IHeapBinary stream(payload.data(), payload.size());
    // The file does not say the width; archives are written with 32 bits.
    stream.setFlags(g_streamFlags);
    organizer.ExtractFromBlob(stream);
}

}  // namespace

CalibratorAmiReader::CalibratorAmiReader()
    : m_logger(logging::Logger::getLogger("kvan.io.amiReader")),
      m_organizer(std::make_unique<ami::CDataFileCalibrationOrganizer>()) {}

CalibratorAmiReader::~CalibratorAmiReader() = default;

bool CalibratorAmiReader::open(const boost::filesystem::path& path) {
    try {
        // The archive before is forgotten first, so that a failure leaves nothing.
        m_organizer = std::make_unique<ami::CDataFileCalibrationOrganizer>();
        const ami::CCalibratorDataFile file(path);
        if (file.version() == ami::CCalibratorDataFile::ReadVersion)
            readArchive(file.payload(), *m_organizer);
        return true;
    } catch (const std::exception& fault) {
        KVAN_LOG(m_logger, WARN) << fault.what();
        m_organizer = std::make_unique<ami::CDataFileCalibrationOrganizer>();
        return false;
    }
}

bool CalibratorAmiReader::getCalibrator(
    std::uint64_t spectrum, EPolarity polarity,
    std::shared_ptr<kvan::calibration::ICalibrationTransformator>& calibrator) const {
    return m_organizer->GetCalibrator(spectrum, polarity, ami::CMSMSInfo::MS, calibrator);
}

}  // namespace kvan::io
