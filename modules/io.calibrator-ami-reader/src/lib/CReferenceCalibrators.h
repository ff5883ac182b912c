#pragma once

#include "CCalibrationStati.h"
#include "DeserializeReferenceCalibrator.h"

namespace kvan::io::ami {

/// Whether masses of ions or of their fragments are measured.
struct CMSMSInfo {
    enum EMSMSType : std::uint32_t { MS = 0 };
};

/// The calibrator that replaces those of all spectra of one polarity and MS/MS type.
struct CReferenceCalibrator {
    /// The record `ReferenceCalibrator`.
    void ExtractFromBlob(Stream& stream);

    EPolarity polarity = POLARITY_POSITIVE;
    CMSMSInfo::EMSMSType msmsType = CMSMSInfo::MS;
    TransformatorPtr calibrator;  ///< null if the archive gives none that can be read
};

/// Throws `std::runtime_error` whatever it is given: two references cannot be ordered.
[[noreturn]] void CompareKeys(const CReferenceCalibrator& left, const CReferenceCalibrator& right);

/// The references of the archive, those without a known polarity or without calibrator left out.
class CReferenceCalibrators {
public:
    void ExtractFromBlob(Stream& stream);

    /// The first one of that polarity and type, or null.
    TransformatorPtr find(EPolarity polarity, CMSMSInfo::EMSMSType msmsType) const;

private:
    void cleanUp(const VersionNumber& version);

    std::vector<CReferenceCalibrator> m_calibrators;
    CCalibrationContainer m_stati;
};

}  // namespace kvan::io::ami
