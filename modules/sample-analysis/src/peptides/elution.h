#pragma once

#include "peptides/peptide.h"

#include <deque>

namespace kvan::sample::peptides {

/// A peptide on its way out of the column.
struct ElutingPeptide {
    Peptide peptide;
    double apex;       ///< seconds
    double abundance;  ///< counts at the apex over all charge states

    /// Counts at `time`, by an exponential-Gaussian hybrid: a Gaussian front and a tail.
    double countsAt(double time, double deviation) const;
};

/// The chromatogram: which peptides elute when. Peptides are made when their time comes and dropped after it.
class Elution {
public:
    /// `duration` in seconds; `coeluting` peptides elute at one moment on average.
    Elution(std::uint64_t seed, double duration, double coeluting);

    /// The peptides that elute at `time`, which never goes back.
    const std::deque<ElutingPeptide>& at(double time);

    /// Standard deviation of the front of each peak, in seconds.
    double deviation() const { return m_deviation; }

private:
    ElutingPeptide make(std::uint64_t number) const;

    std::uint64_t m_seed;
    double m_duration;
    double m_deviation;
    double m_spacing;  // seconds from one peptide to the next
    std::uint64_t m_made = 0;
    std::deque<ElutingPeptide> m_eluting;
};

}  // namespace kvan::sample::peptides
