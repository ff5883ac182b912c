#include "peptides/elution.h"

#include "peptides/random.h"

#include <algorithm>

// A peptide every `spacing` seconds, moved within its slot at random, so that about the wanted number elute at any
// moment however long the run is. Each is a function of seed and number alone: the same run comes out whatever times
// are asked for. Only those that elute are kept, so a run of any length needs little memory.
//
// The shape of a peak is the exponential-Gaussian hybrid exp(-d^2 / (2 + t * max(0, d))), with d in deviations from the
// apex and t the tailing. A peptide is made at the latest 3.5 deviations before its apex and dropped 7 after it, where
// counts are below three in a thousand of those at the apex.

namespace kvan::sample::peptides {

namespace {

/// Where a peak begins and ends, in deviations of its front from the apex.
constexpr double g_front = 3.5;
constexpr double g_tail = 7.0;
constexpr double g_tailing = 0.8;

constexpr double g_typicalCounts = 4000.0;

/// Peaks three seconds wide at half height, narrower in runs that are too short for that.
double peakDeviation(double duration) {
    return std::clamp(duration / 60.0, 0.05, 1.3);
}

/// How much of the sample leaves the column: little at both ends of the run, most in the middle.
double gradient(double part) {
    const double parabola = 4.0 * part * (1.0 - part);
    return 0.05 + std::max(0.0, parabola * parabola);
}

}  // namespace

double ElutingPeptide::countsAt(double time, double deviation) const {
    // In deviations from the apex; the denominator grows after it and stretches the tail.
    const double distance = (time - apex) / deviation;
    const double spread = 2.0 + std::max(0.0, distance) * g_tailing;
    return abundance * exponential(-distance * distance / spread);
}

Elution::Elution(std::uint64_t seed, double duration, double coeluting)
    : m_seed(seed),
      m_duration(duration),
      m_deviation(peakDeviation(duration)),
      m_spacing((g_front + g_tail) * m_deviation / coeluting) {}

const std::deque<ElutingPeptide>& Elution::at(double time) {
    const double horizon = time + (g_front + g_tail) * m_deviation;
    while (static_cast<double>(m_made) * m_spacing < horizon)
        m_eluting.push_back(make(m_made++));
    while (!m_eluting.empty() && m_eluting.front().apex + g_tail * m_deviation < time)
        m_eluting.pop_front();
    return m_eluting;
}

ElutingPeptide Elution::make(std::uint64_t number) const {
    Random random(m_seed ^ 0xE1, number);
    // The first peptides have left the column before the run begins.
    const double apex = (static_cast<double>(number) + random.uniform()) * m_spacing - g_tail * m_deviation;
    const double abundance = g_typicalCounts * gradient(apex / m_duration) * exponential(1.3 * random.normal());
    return {Peptide(m_seed, number), apex, abundance};
}

}  // namespace kvan::sample::peptides
