#pragma once

#include <cmath>
#include <cstdint>

/// Numbers that are the same on every machine: nothing here depends on a library's distributions or on the last bit of
/// its functions.
namespace kvan::sample::peptides {

/// The finisher of SplitMix64 (Steele, Lea, Flood: Fast splittable pseudorandom number generators, 2014).
constexpr std::uint64_t mixed(std::uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    return bits ^ (bits >> 31);
}

/// SplitMix64, one stream for each pair of seed and item.
class Random {
public:
    explicit Random(std::uint64_t seed, std::uint64_t item = 0) : m_state(mixed(seed ^ mixed(item + 1))) {}

    std::uint64_t next() { return mixed(m_state += 0x9E3779B97F4A7C15); }

    /// From 0, included, to 1, excluded.
    double uniform() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
    double uniform(double lower, double upper) { return lower + uniform() * (upper - lower); }

    /// Mean 0 and deviation 1, as the sum of four uniform 16-bit numbers; never beyond 3.5.
    double normal() {
        const std::uint64_t bits = next();
        const std::uint64_t sum = (bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48);
        return (static_cast<double>(sum) - 131070.0) / 37837.2;
    }

    /// From 0 to `count` - 1.
    std::uint32_t below(std::uint32_t count) { return static_cast<std::uint32_t>((next() >> 32) * count >> 32); }

private:
    std::uint64_t m_state;
};

/// e to the power of `x`, to about 1e-12 relative; 0 below -700. Basic operations only.
inline double exponential(double x) {
    if (x < -700.0)
        return 0.0;
    const double halvings = std::floor(x * 1.4426950408889634 + 0.5);
    const double rest = x - halvings * 0.6931471805599453;
    double sum = 1.0;
    for (int term = 11; term > 0; --term)
        sum = sum * rest / term + 1.0;
    return std::ldexp(sum, static_cast<int>(halvings));
}

}  // namespace kvan::sample::peptides
