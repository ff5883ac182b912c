#include "CDataFileCalibrationOrganizer.h"

#include "CalibratorManagers.h"
#include "reference_merge.h"

#include <logger/logger.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

// The top record, versions 1.0 to 1.2: flag and references, lock masses, then up to 1.1 the calibrators of the
// acquisition, and from 1.1 on whether lock masses count. It is open only when all of it was read. The choice for a
// spectrum: its lock mass if those count, else the reference of its polarity merged into its own calibrator, else
// nothing.
namespace kvan::io::ami {

namespace {

void skipCalibratorManager(Stream& stream) {
    enum : std::uint32_t { Single = 0, Multi = 1 };
    switch (read<std::uint32_t>(stream)) {
        case Single:
            return CSingleCalibratorManager::ExtractFromBlobClean(stream);
        case Multi:
            return CMultiCalibratorManager::ExtractFromBlobClean(stream);
        default:  // tolerated: a manager of another kind, which has no bytes
            return;
    }
}

}  // namespace

void CDataFileCalibrationOrganizer::ExtractFromBlob(Stream& stream) {
    static const auto s_logger = logging::Logger::getLogger("kvan.io.amiReader.dataFileCalibrationOrganizer");
    const VersionNumber version = readHead(stream, Tags::get().organizer, {{1, 0}, {1, 1}, {1, 2}});
    const auto hasReferenceCalibrators = read<bool>(stream);
    KVAN_LOG(s_logger, DEBUG) << "version = " << version.toString() << ", flag = " << hasReferenceCalibrators;
    if (hasReferenceCalibrators) {
        m_references = std::make_shared<CReferenceCalibrators>();
        m_references->ExtractFromBlob(stream);
    }
    m_lockMass.ExtractFromBlob(stream);
    if (version <= VersionNumber(1, 1) && read<bool>(stream))
        skipCalibratorManager(stream);
    if (version >= VersionNumber(1, 1))
        stream >> m_useLockMass;
    m_open = true;
}

bool CDataFileCalibrationOrganizer::GetCalibrator(std::uint64_t spectrum, EPolarity polarity,
                                                  CMSMSInfo::EMSMSType msmsType, TransformatorPtr& calibrator) const {
    requireOpen();
    // The number is looked up also where lock masses do not count: one beyond the list is a fault of the archive then
    // too.
    if (m_lockMass.hasCalibrators()) {
        const TransformatorPtr& lockMass = m_lockMass.GetCalibrationPtr(spectrum);
        if (m_useLockMass && lockMass) {
            calibrator = lockMass;
            return true;
        }
    }
    if (!calibrator || familyOf(*calibrator) == kvan::calibration::CalibrationFamily::WithoutReference)
        return false;
    TransformatorPtr reference;
    if (!RetrieveReferenceCalibrator(polarity, msmsType, reference))
        return false;
    const TransformatorPtr merged = mergeReference(calibrator, reference);
    // A law of another family that cannot be converted leaves the spectrum with its own.
    if (!merged)
        return false;
    calibrator = merged;
    return true;
}

bool CDataFileCalibrationOrganizer::RetrieveReferenceCalibrator(EPolarity polarity, CMSMSInfo::EMSMSType msmsType,
                                                                TransformatorPtr& reference) const {
    requireOpen();
    reference = m_references ? m_references->find(polarity, msmsType) : nullptr;
    return reference != nullptr;
}

void CDataFileCalibrationOrganizer::requireOpen() const {
    if (!m_open)
        BOOST_THROW_EXCEPTION(std::runtime_error("No Calibrator.ami opened."));
}

}  // namespace kvan::io::ami
