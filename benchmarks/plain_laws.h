#pragma once

#include <cstdint>
#include <vector>

/// The laws as anybody would write them down, element by element and compiled with -O2: the yardstick of the mass axis.
namespace benchmarks {

struct PlainLaw {
    double timeDelay, timeBase;  // raw = index * timeBase + timeDelay
    double c0, c1, c2;
    double c3 = 0.0, c4 = 0.0;
};

void tofLinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void tofQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void tof2LinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void tof2QuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void tof2CubicAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void ionTrapQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);

void linearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);

/// raw = alpha / mass^2 + freqHigh / mass + beta on a falling axis of `size` points.
struct PlainFtmsLaw {
    double start, step;  // raw = index * step + start
    double alpha, beta, freqHigh;
    std::int32_t size;
};

void ftmsAxis(const PlainFtmsLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);
void ftmsQuadraticAxis(const PlainFtmsLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses);

}  // namespace benchmarks
