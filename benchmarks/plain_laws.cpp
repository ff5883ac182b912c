#include "plain_laws.h"

#include <cmath>
#include <stdexcept>

namespace benchmarks {

namespace {

double signedSqrt(double x) {
    return 0.0 > x ? -std::sqrt(-x) : std::sqrt(x);
}

double signedSquare(double x) {
    return 0.0 > x ? -(x * x) : x * x;
}

template <class RawToMass>
void axis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses,
          RawToMass rawToMass) {
    const double timeDelay = law.timeDelay;
    const double timeBase = law.timeBase;
    masses.resize(static_cast<std::size_t>(last - first) + 1);
    double* const out = masses.data();
    for (std::int32_t index = first; index <= last; ++index)
        out[index - first] = rawToMass(index * timeBase + timeDelay);
}

}  // namespace

void tofLinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = 1e12 / law.c1;
    axis(law, first, last, masses, [=](double raw) { return signedSquare(raw - c0) / c1; });
}

void tofQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = 1e12 / law.c1;
    const double c2 = law.c2;
    const double b = signedSqrt(c1);
    const double sign = 0.0 > c1 ? -1.0 : 1.0;
    axis(law, first, last, masses, [=](double raw) {
        const double disc = c0 > raw ? c1 - (raw - c0) * 4.0 * c2 : c1 - (c0 - raw) * 4.0 * c2;
        if (0.0 > disc)
            throw std::logic_error("complex");
        const double q = (std::sqrt(disc) * sign + b) * -0.5;
        return signedSquare((c0 - raw) / q);
    });
}

void ionTrapQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = law.c1;
    const double c2 = law.c2;
    axis(law, first, last, masses, [=](double raw) { return raw * raw * c2 + raw * c1 + c0; });
}

}  // namespace benchmarks
