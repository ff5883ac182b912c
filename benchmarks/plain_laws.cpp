#include "plain_laws.h"

#include <algorithm>
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

/// The stable root of the quadratic in the root of mass.
struct QuadraticLaw {
    explicit QuadraticLaw(const PlainLaw& law)
        : c0(law.c0), c1(1e12 / law.c1), c2(law.c2), b(signedSqrt(c1)), sign(0.0 > c1 ? -1.0 : 1.0) {}

    double root(double raw) const {
        const double disc = c0 > raw ? c1 - (raw - c0) * 4.0 * c2 : c1 - (c0 - raw) * 4.0 * c2;
        if (0.0 > disc)
            throw std::logic_error("complex");
        const double q = (std::sqrt(disc) * sign + b) * -0.5;
        return (c0 - raw) / q;
    }

    double c0, c1, c2, b, sign;
};

template <class RawToMass>
void ftmsPoints(const PlainFtmsLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses,
                RawToMass rawToMass) {
    const double size = law.size;
    masses.resize(static_cast<std::size_t>(last - first) + 1);
    double* const out = masses.data();
    for (std::int32_t index = first; index <= last; ++index) {
        double inside = index;
        if (inside >= size)
            inside = size - 1.0;
        if (0.0 > inside)
            inside = 0.0;
        out[index - first] = rawToMass(inside * law.step + law.start);
    }
}

}  // namespace

void tofLinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = 1e12 / law.c1;
    axis(law, first, last, masses, [=](double raw) { return signedSquare(raw - c0) / c1; });
}

void tofQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const QuadraticLaw quadratic(law);
    axis(law, first, last, masses, [&](double raw) { return signedSquare(quadratic.root(raw)); });
}

void tof2LinearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = 1e12 / law.c1;
    const double shift = law.c4;
    axis(law, first, last, masses, [=](double raw) { return signedSquare(raw - c0) / c1 - shift; });
}

void tof2QuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const QuadraticLaw quadratic(law);
    const double shift = law.c4;
    axis(law, first, last, masses, [&](double raw) { return signedSquare(quadratic.root(raw)) - shift; });
}

void tof2CubicAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const QuadraticLaw quadratic(law);
    const double c0 = law.c0;
    const double c2 = law.c2;
    const double c3 = law.c3;
    const double b = quadratic.b;
    const double shift = law.c4;
    const auto rawOf = [=](double mass) {
        const double t = signedSqrt(mass);
        return ((t * c3 + c2) * t + b) * t + c0;
    };
    axis(law, first, last, masses, [&](double raw) {
        double s = quadratic.root(raw);
        if (s > 0.0 && c3 != 0.0) {
            s = s * raw / std::max(rawOf(s * s), 20.0);
            const double slope = (s * 3.0 * c3 + 2 * c2) * s + b;
            s = s - (rawOf(signedSquare(s)) - raw) / slope;
            s = s - (rawOf(signedSquare(s)) - raw) / slope;
        }
        return signedSquare(s) - shift;
    });
}

void ionTrapQuadraticAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = law.c1;
    const double c2 = law.c2;
    axis(law, first, last, masses, [=](double raw) { return raw * raw * c2 + raw * c1 + c0; });
}

void linearAxis(const PlainLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.c0;
    const double c1 = law.c1;
    axis(law, first, last, masses, [=](double raw) { return raw * c1 + c0; });
}

void ftmsAxis(const PlainFtmsLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double c0 = law.beta * -1.0;
    const double c1 = law.freqHigh;
    ftmsPoints(law, first, last, masses, [=](double raw) { return 1.0 / ((raw - c0) / c1); });
}

void ftmsQuadraticAxis(const PlainFtmsLaw& law, std::int32_t first, std::int32_t last, std::vector<double>& masses) {
    const double a = law.alpha;
    const double b = law.freqHigh;
    ftmsPoints(law, first, last, masses, [&](double raw) {
        const double c = law.beta - raw;
        const double disc = b * b - a * 4.0 * c;
        if (!(0.0 > disc)) {
            const double w = std::sqrt(disc);
            return 1.0 / (0.0 > b ? (b - w) * -0.5 / a : c / ((w + b) * -0.5));
        }
        const double w = std::sqrt(-disc);
        return 1.0 / (b > 0.0 ? -((-b - w) * -0.5 / a) : (c - b * b / (a + a)) / ((w - b) * -0.5));
    });
}

}  // namespace benchmarks
