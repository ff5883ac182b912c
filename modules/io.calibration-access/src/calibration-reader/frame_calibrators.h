#pragma once

#include "calibration-reader/mz_models.h"
#include "calibration-table-reader/calibration_table_reader.h"

namespace kvan::io::calibration {

/// The calibrations that a state has for single spectra, over one connection, which must outlive it.
class FrameCalibrators {
public:
    FrameCalibrators(cppsqlite::CppSQLite3DB& database, std::int64_t state);

    /// That of the spectrum with the number `frameId`, a new object. Throws `std::runtime_error` when there is none.
    std::shared_ptr<::kvan::calibration::ICalibrationTransformator> load(
        std::int64_t frameId, const std::optional<DigitizerConstants>& digitizer);

private:
    tables::CalibrationTableReader m_models;
    cppsqlite::CppSQLite3Statement m_calibrationOfFrame;
};

}  // namespace kvan::io::calibration
