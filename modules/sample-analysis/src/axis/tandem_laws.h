#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <sample-analysis/sample_run.h>

namespace kvan::sample::axis {

/// A law that depends on the precursor of a fragment spectrum, on the time axis of `tof`. `scale` is by how much the
/// instrument gives masses too high, 1.0 for none; `precursor` the m/z of the precursor, 0.0 in a survey spectrum;
/// `lower` and `upper` the m/z range of the run.
struct TandemLaw {
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> tof;
    double scale;
    double precursor;
    double lower;
    double upper;

    /// Of the families `Kite1`, `Kite2` and `Psd`; `tof` itself for any other.
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> of(SampleCalibration calibration) const;
};

}  // namespace kvan::sample::axis
