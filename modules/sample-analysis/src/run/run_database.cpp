#include "run/run_database.h"

#include <boost/format.hpp>

namespace kvan::sample::run {

namespace {

CalibrationState stateOf(const SampleRunParameters& parameters, const MassAxis& axis) {
    const MassAxis::Calibration law = axis.calibration(0.0);
    const MzCalibration calibration = mzCalibrationOf(law);
    CalibrationState state;
    state.key = str(boost::format("5eed0000-0000-4000-8000-%012x") % (parameters.seed & 0xFFFFFFFFFFFF));
    constexpr std::int64_t lastTofModel = 2;
    if (calibration.model <= lastTofModel)
        state.digitizer = digitizerOf(*law);
    auto compensation = axis.referenceCompensation();
    state.hasFrameCalibrators = !compensation;
    if (!compensation)
        return state;
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
