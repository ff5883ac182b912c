#pragma once

#include "CCalibrationStati.h"
#include "DeserializeReferenceCalibrator.h"

namespace kvan::io::ami {

/// Masses that are known to be in every spectrum.
struct CReferenceMassList {
    struct Entry {
        std::string name;
        double mass = 0.0;
        std::uint32_t charge = 0;
        std::string comment;
    };

    void ExtractFromBlob(Stream& stream);

    std::string name;
    std::string comment;
    std::vector<Entry> entries;
};

/// How the lock-mass calibration was done; its numbers are stepped over.
struct CQAMethodMSLockMassRecalibrationParams {
    void ExtractFromBlob(Stream& stream);

    CReferenceMassList masses;
};

/// A calibrator for every spectrum, made with the help of masses that are known to be in it.
class CLockMassCalibrationMgr {
public:
    /// The calibrator of one spectrum; null if the spectrum has none.
    struct CCalibrationData {
        void ExtractFromBlob(Stream& stream);

        TransformatorPtr calibrator;
    };

    void ExtractFromBlob(Stream& stream);

    bool hasCalibrators() const { return !m_calibrators.empty(); }
    /// Null if the spectrum has none; throws `std::runtime_error` "Spectrum number out of range." beyond the list.
    const TransformatorPtr& GetCalibrationPtr(std::uint64_t spectrum) const;

private:
    std::shared_ptr<CQAMethodMSLockMassRecalibrationParams> m_params;
    std::vector<CCalibrationData> m_calibrators;
    CCalibrationContainer m_stati;
};

}  // namespace kvan::io::ami
