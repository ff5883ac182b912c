#pragma once

#include "lib/CDataFileCalibrationOrganizer.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <sample-analysis/archive_writer.h>
#include <test-support/support.h>

namespace archives {

using namespace kvan::io::ami;
using namespace kvan::io;
using namespace kvan;
using kvan::sample::Bytes;
using kvan::sample::CalibratorArchive;

/// A straight line that gives mass `c0` at index 0.
inline Bytes line(double c0) {
    return kvan::test::calibrationBlob(4098, {c0, 1});
}

inline std::string lineText(const char* c0) {
    return std::string("V1.0CCalibrator 4 1 V1.0CLinearCalibrationConstants 0 1 ") + c0 + " 1 0 ";
}

/// All that stands after the head of the file.
inline Bytes payload(const CalibratorArchive& archive) {
    const Bytes file = archiveBytes(archive);
    return {file.begin() + 12, file.end()};
}

/// Reads `bytes` to the end of the top record; "" or the text of the failure.
inline std::string extract(const Bytes& bytes, CDataFileCalibrationOrganizer& organizer) {
    kvan::binaryio::IHeapBinary stream(bytes.data(), bytes.size());
    stream.setFlags(1);
    const std::string failure = kvan::test::failureOf([&] { organizer.ExtractFromBlob(stream); });
    return failure.empty() && !stream.isAtEnd() ? "bytes left" : failure;
}

inline std::string extract(const CalibratorArchive& archive) {
    CDataFileCalibrationOrganizer organizer;
    return extract(payload(archive), organizer);
}

/// Something in each record, in the newest versions.
inline CalibratorArchive full() {
    const kvan::sample::ArchivedCalibrator calibrator{.blob = line(7)};
    const kvan::sample::ArchivedStatus status{.description = "after the run", .calibrator = calibrator};
    return {.references = {{.references = {{.polarity = 0, .calibrator = {.blob = line(100)}},
                                           {.polarity = 1, .calibrator = {.blob = line(200)}}},
                            .stati = {status}}},
            .lockMasses = {.params = {{.masses = {622.029, 922.01}}},
                           .spectra = {{.calibrator = {{.blob = line(10)}}}, {}, {.calibrator = {{.blob = line(12)}}}},
                           .stati = {status}}};
}

}  // namespace archives
