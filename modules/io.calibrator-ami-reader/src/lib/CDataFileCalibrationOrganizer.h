#pragma once

#include "CLockMassCalibrationMgr.h"
#include "CReferenceCalibrators.h"

namespace kvan::io::ami {

/// The top record of the archive, and the answer to what calibrator a spectrum gets.
class CDataFileCalibrationOrganizer {
public:
    /// Reads the whole archive. Not open after a failure.
    void ExtractFromBlob(Stream& stream);

    /// As `CalibratorAmiReader::getCalibrator`, for one MS/MS type.
    bool GetCalibrator(std::uint64_t spectrum, EPolarity polarity, CMSMSInfo::EMSMSType msmsType,
                       TransformatorPtr& calibrator) const;

    /// The first reference of that polarity and type; false if there is none.
    bool RetrieveReferenceCalibrator(EPolarity polarity, CMSMSInfo::EMSMSType msmsType,
                                     TransformatorPtr& reference) const;

private:
    void requireOpen() const;

    std::shared_ptr<CReferenceCalibrators> m_references;
    CLockMassCalibrationMgr m_lockMass;
    bool m_useLockMass = false;
    bool m_open = false;
};

}  // namespace kvan::io::ami
