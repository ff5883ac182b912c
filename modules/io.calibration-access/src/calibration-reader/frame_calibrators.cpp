#include "calibration-reader/frame_calibrators.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>

// From a spectrum to its row in two steps: the mapping of the state names a calibration, the table holds it. A gap in
// either is the same failure, since neither is of use alone.
namespace kvan::io::calibration {

namespace {

[[noreturn]] void failWithoutTrafo(std::int64_t id) {
    BOOST_THROW_EXCEPTION(std::runtime_error("No m/z trafo for id [" + std::to_string(id) + "] available"));
}

}  // namespace

FrameCalibrators::FrameCalibrators(cppsqlite::CppSQLite3DB& database, std::int64_t state)
    : m_models(database, "FrameMzCalibration", {}, state),
      m_calibrationOfFrame(database.compileStatement(
          "SELECT FrameMzCalibrationId FROM FrameMzCalibrationMapping WHERE CalibrationState='" +
          std::to_string(state) + "' AND FrameId=?")) {}

std::shared_ptr<::kvan::calibration::ICalibrationTransformator> FrameCalibrators::load(
    std::int64_t frameId, const std::optional<DigitizerConstants>& digitizer) {
    m_calibrationOfFrame.bind(1, frameId);
    // Stays open while the model is read, so that both come from one state of the database.
    const tables::TypedRow mapping(m_calibrationOfFrame.execQuery(), "FrameMzCalibrationMapping", "FrameId", frameId);
    if (!mapping.exists())
        failWithoutTrafo(frameId);
    const std::int64_t id = mapping.integer(0);
    const tables::TypedRow row = m_models.find(id);
    if (!row.exists())
        failWithoutTrafo(id);
    return makeMzTrafo(mzModelOf(row.integer(tables::CalibrationTableReader::ModelType)), row,
                       m_models.firstModelColumn(), digitizer);
}

}  // namespace kvan::io::calibration
