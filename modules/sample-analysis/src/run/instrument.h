#pragma once

#include "peptides/random.h"

#include <sample-analysis/variable_tables.h>

namespace kvan::sample::run {

using peptides::Random;

/// What the synthetic instrument tells about itself: its variables and what they are at a moment.
class Instrument {
public:
    /// The state for one spectrum.
    struct Moment {
        double part = 0.0;        ///< of the run that has passed, 0 to 1
        double isolated = 0.0;    ///< m/z of the precursor; 0 in a survey spectrum
        std::int32_t charge = 0;  ///< of the precursor
    };

    explicit Instrument(std::uint64_t seed) : m_noise(seed ^ 0x7E) {}

    static std::vector<VariableDeclaration> declarations();

    /// What is set for the spectra of a segment that `key` names.
    static Bytes settings(const VariableKey& key);

    /// What is read back for one spectrum.
    Bytes readings(const Moment& moment);

private:
    Random m_noise;
};

}  // namespace kvan::sample::run
