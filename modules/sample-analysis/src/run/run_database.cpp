#include "run/run_database.h"

#include <boost/format.hpp>

// The database holds what was found out after the run: the calibrations without the error that the native files have. A
// family that records temperatures gets references instead of one calibration a spectrum, since its spectra tell the
// drift themselves. The key comes from the seed, so that the same parameters give the same bytes.

namespace kvan::sample::run {

namespace {

CalibrationState stateOf(const SampleRunParameters& parameters, const MassAxis& axis) {
    const MassAxis::Calibration law = axis.calibration(0.0);
    const MzCalibration calibration = mzCalibrationOf(law);
    CalibrationState state;
    state.key = str(boost::format("5eed0000-0000-4000-8000-%012x") % (parameters.seed & 0xFFFFFFFFFFFF));
    // Models 1 and 2 count on a time axis of the state; the others bring theirs along.
    constexpr std::int64_t lastTofModel = 2;
    if (calibration.model <= lastTofModel)
        state.digitizer = digitizerOf(*law);
    auto compensation = axis.referenceCompensation();
    state.hasFrameCalibrators = !compensation;
    if (!compensation)
        return state;
    // A reference has room for two sensors; a missing one has the factor 0.0.
    compensation->temperatures.resize(2);
    compensation->factors.resize(2);
    const MzReference reference{calibration, compensation->temperatures[0], compensation->temperatures[1],
                                compensation->factors[0], compensation->factors[1]};
    if (parameters.polarities != Polarities::Negative)
        state.positive = reference;
    if (parameters.polarities != Polarities::Positive)
        state.negative = reference;
    return state;
}

}  // namespace

RunDatabase::RunDatabase(const boost::filesystem::path& directory, const SampleRunParameters& parameters,
                         const MassAxis& axis)
    : m_writer(directory) {
    const CalibrationState state = stateOf(parameters, axis);
    m_hasFrameCalibrators = state.hasFrameCalibrators;
    m_writer.addState(state);
}

void RunDatabase::add(const MassAxis::Calibration& calibration) {
    ++m_spectra;
    if (m_hasFrameCalibrators)
        m_writer.addFrame(m_spectra, mzCalibrationOf(calibration));
}

}  // namespace kvan::sample::run
