#include "CReferenceCalibrators.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>
#include <logger/logger.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// References in the order of the archive; the first of a polarity and type is the one in force. After the reading the
// list is cleaned: an unknown polarity or a missing calibrator is tolerated and dropped, but a single temperature in an
// early archive spoils the file as a whole.
namespace kvan::io::ami {

using logging::Logger;

namespace {

/// Of early archives, compensated references with a single temperature spoil the whole file.
void requireSoundTemperatures(const kvan::calibration::ICalibrationTransformator& calibrator) {
    using kvan::calibration::ICalibrationConstantsFunctionalTemperatureCompensation;
    if (familyOf(calibrator) != kvan::calibration::CalibrationFamily::CompensatedTof2)
        return;
    const auto functional = calibrator.GetFunctionalConstants();
    const auto* const compensation =
        dynamic_cast<const ICalibrationConstantsFunctionalTemperatureCompensation*>(functional.get());
    if (compensation != nullptr && compensation->GetMeasuredTemperatures().size() == 1)
        BOOST_THROW_EXCEPTION(
            std::runtime_error("CReferenceCalibrators::ExtractFromBlob: this AMI contains problematic information."));
}

}  // namespace

void CReferenceCalibrator::ExtractFromBlob(Stream& stream) {
    static const Logger s_logger = Logger::getLogger("kvan.io.amiReader.referenceCalibrator");
    const VersionNumber version = readHead(stream, Tags::get().referenceCalibrator, {{0, 1}, {0, 2}, {0, 3}});
    polarity = EPolarity{read<std::uint32_t>(stream)};
    msmsType = CMSMSInfo::EMSMSType{read<std::uint32_t>(stream)};
    KVAN_LOG(s_logger, DEBUG) << "version = " << version.toString()
                              << " polarity = " << static_cast<std::uint32_t>(polarity)
                              << ", msmstype = " << static_cast<std::uint32_t>(msmsType);
    // The bytes are read before the refusal, so that a cut archive is named as such.
    if (version == VersionNumber(0, 1)) {
        skipString(stream);
        ThrowUntestedCodePath();
    }
    if (version == VersionNumber(0, 2)) {
        skipBytes(stream);
        ThrowUntestedCodePath();
    }
    DeserializeReferenceCalibrator(stream, calibrator);
}

void CompareKeys(const CReferenceCalibrator&, const CReferenceCalibrator&) {
    BOOST_THROW_EXCEPTION(std::runtime_error("RZ: for trap analyses scan modi have to be considered."));
}

void CReferenceCalibrators::ExtractFromBlob(Stream& stream) {
    static const Logger s_logger = Logger::getLogger("kvan.io.amiReader.referenceCalibrators");
    const VersionNumber version = readHead(stream, Tags::get().referenceCalibrators, {{0, 1}, {0, 2}, {0, 3}});
    KVAN_LOG(s_logger, DEBUG) << "version = " << version.toString();
    for (std::uint64_t left = readArrayHead(stream); left > 0; --left)
        m_calibrators.emplace_back().ExtractFromBlob(stream);
    if (version >= VersionNumber(0, 2))
        m_stati.ExtractFromBlob(stream);

    KVAN_LOG(s_logger, DEBUG) << "read " << m_calibrators.size() << " reference calibrators.";
    cleanUp(version);
    KVAN_LOG(s_logger, DEBUG) << "after cleanup: " << m_calibrators.size() << " reference calibrators.";
}

void CReferenceCalibrators::cleanUp(const VersionNumber& version) {
    std::erase_if(m_calibrators, [](const CReferenceCalibrator& reference) {
        return reference.polarity == POLARITY_UNKNOWN || !reference.calibrator;
    });
    // After the cleaning: a reference that is dropped can do no harm.
    if (version < VersionNumber(0, 3)) {
        for (const CReferenceCalibrator& reference : m_calibrators)
            requireSoundTemperatures(*reference.calibrator);
    }
}

TransformatorPtr CReferenceCalibrators::find(EPolarity polarity, CMSMSInfo::EMSMSType msmsType) const {
    const auto found =
        std::find_if(m_calibrators.begin(), m_calibrators.end(), [&](const CReferenceCalibrator& reference) {
            return reference.polarity == polarity && reference.msmsType == msmsType;
        });
    return found != m_calibrators.end() ? found->calibrator : nullptr;
}

}  // namespace kvan::io::ami
