#include "peptides/peptide.h"

#include "peptides/random.h"

// A peptide is a number: its sequence comes from a random stream of its own, so that any part of a run can be made
// again without the rest. Masses are monoisotopic; m/z follows from them by protons alone.

namespace kvan::sample::peptides {

namespace {

constexpr double g_protonMass = 1.007276;
constexpr double g_waterMass = 18.010565;

/// Mean distance of neighbouring isotopes of a peptide, and the mean number of heavy isotopes per mass unit: 0.0625 in
/// an average residue of mass 111 (C4.94 H7.76 N1.36 O1.48 S0.04).
constexpr double g_isotopeDistance = 1.00235;
constexpr double g_heavyIsotopesPerMass = 5.6e-4;

/// Monoisotopic masses of the residues, without those after which trypsin cuts.
constexpr double g_residueMasses[] = {57.021464,  71.037114,  87.032028,  97.052764,  99.068414,  101.047679,
                                      103.009185, 113.084064, 114.042927, 115.026943, 128.058578, 129.042593,
                                      131.040485, 137.058912, 147.068414, 163.063329, 186.079313};
constexpr std::uint8_t g_innerResidues = std::size(g_residueMasses);
/// Lysine and arginine, after which trypsin cuts.
constexpr double g_lastResidueMasses[] = {128.094963, 156.101111};

double residueMass(std::uint8_t residue) {
    return residue < g_innerResidues ? g_residueMasses[residue] : g_lastResidueMasses[residue - g_innerResidues];
}

/// Isotopes follow a Poisson distribution; the highest has `height`, those below a hundredth of it are left out.
void addPattern(double mass, double mzLightest, int charge, double height, std::vector<Peak>& peaks) {
    const double mean = mass * g_heavyIsotopesPerMass;
    double highest = 1.0;
    double weight = 1.0;
    for (int heavy = 1; heavy < mean; ++heavy)
        highest = weight *= mean / heavy;
    weight = 1.0;
    for (int heavy = 0; heavy < mean || weight > highest * 0.01; weight *= mean / ++heavy)
        peaks.push_back({mzLightest + heavy * g_isotopeDistance / charge, height * weight / highest});
}

}  // namespace

Peptide::Peptide(std::uint64_t seed, std::uint64_t number) : m_seed(seed), m_number(number) {
    Random random(seed, number);
    m_length = static_cast<std::uint8_t>(6 + random.below(10) + random.below(10));
    for (std::size_t position = 0; position + 1 < m_length; ++position)
        m_residues[position] = static_cast<std::uint8_t>(random.below(g_innerResidues));
    m_residues[m_length - 1U] = static_cast<std::uint8_t>(g_innerResidues + random.below(2));
    m_mass = g_waterMass;
    for (const std::uint8_t residue : residues())
        m_mass += residueMass(residue);
}

double Peptide::mz(int charge, bool negative) const {
    return m_mass / charge + (negative ? -g_protonMass : g_protonMass);
}

double Peptide::chargeShare(int charge, bool negative) const {
    const double usual = m_mass / (negative ? 1100.0 : 750.0);
    const double distance = charge - usual;
    return exponential(-1.5 * distance * distance);
}

void Peptide::addIsotopes(int charge, bool negative, double height, std::vector<Peak>& peaks) const {
    addPattern(m_mass, mz(charge, negative), charge, height, peaks);
}

void Peptide::addFragments(int charge, bool negative, double height, std::vector<Peak>& peaks) const {
    Random random(m_seed ^ 0xF4A6, m_number);
    const double sign = negative ? -g_protonMass : g_protonMass;
    double prefix = 0.0;
    for (const std::uint8_t residue : residues().first(m_length - 1U)) {
        prefix += residueMass(residue);
        const double suffix = m_mass - prefix;
        const double bHeight = height * 0.25 * random.uniform() * random.uniform();
        const double yHeight = height * random.uniform() * random.uniform();
        const double bIsotope = prefix * g_heavyIsotopesPerMass;
        const double yIsotope = suffix * g_heavyIsotopesPerMass;
        peaks.push_back({prefix + sign, bHeight});
        peaks.push_back({prefix + sign + g_isotopeDistance, bHeight * bIsotope});
        peaks.push_back({suffix + sign, yHeight});
        peaks.push_back({suffix + sign + g_isotopeDistance, yHeight * yIsotope});
    }
    addIsotopes(charge, negative, height * 0.15, peaks);
}

}  // namespace kvan::sample::peptides
