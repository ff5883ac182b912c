#pragma once

#include <calibration-core/interfaces/Polarity.h>
#include <logger/logger.h>
#include <sysutils/boost_fwd.h>

#include <cstdint>
#include <memory>

namespace kvan::calibration {
class ICalibrationTransformator;
}

namespace kvan::io {

namespace ami {
class CDataFileCalibrationOrganizer;
}

/// The archive `Calibrator.ami`: re-calibrations made after acquisition, one for each spectrum (lock mass) or one for
/// each polarity (references). Read whole by `open`; docs/calibrator-ami.md describes its format.
///
/// Any number of threads may ask for calibrators at once, but not while another one opens.
class CalibratorAmiReader {
public:
    CalibratorAmiReader();
    ~CalibratorAmiReader();
    CalibratorAmiReader(const CalibratorAmiReader&) = delete;
    CalibratorAmiReader& operator=(const CalibratorAmiReader&) = delete;

    /// Reads the archive at `path` and forgets the one before. False, with a WARN line on "kvan.io.amiReader" that
    /// says why, for anything that is no archive or a damaged one; nothing of it is kept then. A pipe, socket, device
    /// or directory is refused without opening it. True, and yet nothing open, for a file version that nobody can read.
    /// Throws nothing for whatever the file holds.
    bool open(const boost::filesystem::path& path);

    /// Replaces `calibrator`, the one of the native file or null, by what the archive has for that spectrum; `spectrum`
    /// counts from 0. False, with `calibrator` unchanged, when it has nothing that fits. What comes out may be shared
    /// with other callers: it is to be converted with, not to be set.
    ///
    /// Throws `std::runtime_error` "No Calibrator.ami opened.", "Spectrum number out of range." for a spectrum beyond a
    /// list of lock masses, and what a reference throws that cannot be applied, such as one with another number of
    /// temperatures.
    bool getCalibrator(std::uint64_t spectrum, EPolarity polarity,
                       std::shared_ptr<kvan::calibration::ICalibrationTransformator>& calibrator) const;

private:
    logging::Logger m_logger;
    std::unique_ptr<ami::CDataFileCalibrationOrganizer> m_organizer;
};

}  // namespace kvan::io
