#pragma once

#include "calibration-reader/unlocked_frame_calibrators.h"

#include <calibration-core/temperaturecompensation/CalibrationTemperatureCompensator.h>
#include <logger/logger.h>

#include <boost/thread/once.hpp>
#include <memory>
#include <string>
#include <tuple>

namespace kvan::io::calibration {

namespace details {

/// The temperatures of a reference calibration, in degrees, and by how many parts per million a degree the flight path
/// grows.
struct MzCalibTemperatureInfo {
    double T1 = 0.0;
    double T2 = 0.0;
    double dC1 = 0.0;
    double dC2 = 0.0;

    bool isCompensated() const { return dC1 != 0.0 || dC2 != 0.0; }
};

}  // namespace details

/// A chosen state of an open database. See `CalibrationReaderSqlite`.
class CalibrationReaderSqliteImpl {
public:
    using TransformatorPtr = std::shared_ptr<::kvan::calibration::ICalibrationTransformator>;

    CalibrationReaderSqliteImpl(std::unique_ptr<cppsqlite::CppSQLite3DB> database, const std::string& key);

    const std::string& stateKey() const { return m_key; }
    bool hasFrameCalibrators() const { return m_hasFrameCalibrators; }
    TransformatorPtr getMzTrafo(std::int64_t frameId);
    TransformatorPtr getRefMzTrafo(bool negative, double T1, double T2);

private:
    using RefMzTrafo = std::tuple<TransformatorPtr, details::MzCalibTemperatureInfo>;

    struct Reference {
        boost::once_flag loaded = BOOST_ONCE_INIT;  // std::once_flag may hang when a load throws
        RefMzTrafo trafo;
    };

    TransformatorPtr loadFrameMzTrafo(std::int64_t frameId);
    /// Without a transformator when the state names none for the polarity, or one that is not there.
    RefMzTrafo loadRefMzTrafo(bool negative);
    /// What `read` gives, unless somebody may have written what it read without being kept from it by a lock.
    template <class Read>
    auto readWhole(Read read);

    logging::Logger m_logger;
    std::unique_ptr<cppsqlite::CppSQLite3DB> m_database;
    std::optional<sys::FileStamp> m_frozen;  // of a file that is read without locks
    std::string m_key;
    std::int64_t m_state;
    tables::CalibrationTableReader m_references;
    FrameCalibrators m_frames;
    bool m_hasFrameCalibrators;
    std::optional<DigitizerConstants> m_digitizer;
    UnlockedFrameCalibrators m_unlockedFrames;
    Reference m_positive;
    Reference m_negative;
};

}  // namespace kvan::io::calibration
