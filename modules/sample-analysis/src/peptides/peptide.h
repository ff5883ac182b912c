#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace kvan::sample::peptides {

/// A peak before detection: where it would stand on a perfect axis, and its height in counts.
struct Peak {
    double mz;
    double height;
};

/// A tryptic peptide of random sequence. The same seed and number give the same peptide.
class Peptide {
public:
    Peptide(std::uint64_t seed, std::uint64_t number);

    std::uint64_t number() const { return m_number; }

    /// m/z of the lightest isotope with `charge` protons, added or (negative mode) removed.
    double mz(int charge, bool negative) const;

    /// Share of the peptide's molecules that carry `charge` charges, which rises and falls with its mass.
    double chargeShare(int charge, bool negative) const;

    /// Isotopes of the ion whose highest one has `height`.
    void addIsotopes(int charge, bool negative, double height, std::vector<Peak>& peaks) const;

    /// Singly charged b and y ions with two isotopes each, and what is left of the precursor.
    void addFragments(int charge, bool negative, double height, std::vector<Peak>& peaks) const;

    static constexpr int MaxCharge = 4;

private:
    std::span<const std::uint8_t> residues() const { return {m_residues.data(), m_length}; }

    std::uint64_t m_seed;
    std::uint64_t m_number;
    std::array<std::uint8_t, 30> m_residues{};
    std::uint8_t m_length = 0;
    double m_mass = 0.0;
};

}  // namespace kvan::sample::peptides
