#pragma once

#include <cstdint>
#include <vector>

/// The laws as anybody would write them down, element by element and compiled with -O2: the yardstick of the mass axis.
namespace benchmarks {

struct PlainLaw {
    double timeDelay, timeBase;  // raw = index * timeBase + timeDelay
    double c0, c1, c2;
};

void tofLinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void tofQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void ionTrapQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);

}  // namespace benchmarks
