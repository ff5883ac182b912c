#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace benchmarks {

/// What the profiles of a time-of-flight detector look like.
enum class ProfileKind {
    Noisy,   // isotope peaks over a baseline with strong noise
    Quiet,   // the same over counts of 0 to 3
    Sparse,  // the same with zeros where no peak stands
};

/// One profile of `count` counts, deterministic by `seed`: a peak cluster each few thousand samples, heights over four
/// orders of magnitude, counting noise on the peaks.
inline std::vector<std::uint32_t> makeProfile(ProfileKind kind, std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<double> signal(count, 0.0);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (std::size_t cluster = 0; cluster < count / 2000 + 1; ++cluster) {
        const double begin = uniform(random) * static_cast<double>(count);
        const double height = std::pow(10.0, 1.5 + 4.0 * uniform(random));
        const double spacing = 40.0 + 80.0 * uniform(random);
        double isotope = 1.0;
        for (int peak = 0; peak < 5; ++peak, isotope *= 1.2 / (peak + 0.9)) {
            const double centre = begin + spacing * peak;
            for (int offset = -15; offset <= 15; ++offset) {
                const auto at = static_cast<std::ptrdiff_t>(centre) + offset;
                const double distance = (static_cast<double>(at) - centre) / 3.5;
                if (at >= 0 && at < static_cast<std::ptrdiff_t>(count))
                    signal[static_cast<std::size_t>(at)] += height * isotope * std::exp(-0.5 * distance * distance);
            }
        }
    }
    std::normal_distribution<double> normal;
    std::vector<std::uint32_t> profile(count);
    for (std::size_t index = 0; index < count; ++index) {
        double value = signal[index] + std::sqrt(signal[index]) * normal(random);
        if (kind == ProfileKind::Noisy)
            value += 150.0 + 25.0 * normal(random);
        if (kind == ProfileKind::Quiet)
            value += 1.5 + normal(random);
        if (kind == ProfileKind::Sparse && signal[index] < 2.0)
            value = 0.0;
        profile[index] = static_cast<std::uint32_t>(std::lround(std::max(value, 0.0)));
    }
    return profile;
}

}  // namespace benchmarks
