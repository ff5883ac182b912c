#pragma once

#include "axis/mass_axis.h"
#include "peptides/peptide.h"
#include "peptides/random.h"

namespace kvan::sample::run {

using axis::MassAxis;
using peptides::Peak;
using peptides::Random;

/// Turns ideal peaks into what an instrument stores: a peak list, a profile and their summary.
class Detector {
public:
    Detector(const SampleRunParameters& parameters, const MassAxis& axis);

    /// Fills `spectrum` with lines and, if asked, a profile out of `peaks`, which are used up. Reuses the memory that
    /// `spectrum` holds.
    void record(std::vector<Peak>& peaks, const MassAxis::Calibration& calibration, bool withProfile, Random& random,
                SpectrumData& spectrum);

private:
    /// A peak on the axis.
    struct Line {
        double index;
        double height;
        double width;  // full width at half maximum, in data points
    };

    void detect(std::vector<Peak>& peaks, Random& random);
    void place(const std::vector<Peak>& peaks, const MassAxis::Calibration& calibration);
    void fillLines(LineData& lines) const;
    template <class T>
    void fillProfile(std::vector<T>& profile, Random& random) const;
    void summariseLines(QuickInfo& info) const;

    const SampleRunParameters& m_parameters;
    const MassAxis& m_axis;
    std::vector<Line> m_lines;
};

}  // namespace kvan::sample::run
