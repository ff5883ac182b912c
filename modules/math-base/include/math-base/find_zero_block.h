#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace kvan::math {

/// Searches that run side by side in `findZeroBlock`.
inline constexpr std::size_t g_zeroBlockSize = 64;

/// Searches for x with law(x) = y, each in its own bracket: an array a column, so that all of them take each step
/// together.
struct ZeroBlock {
    using Column = double[g_zeroBlockSize];

    alignas(64) Column y;
    /// In: one end of the bracket, and law(end) - y.
    alignas(64) Column previousX;
    alignas(64) Column previousY;
    /// In: the other end. Out: the zero, with what is left of law(zero) - y.
    alignas(64) Column bestX;
    alignas(64) Column bestY;
};

// The step of a search with the best end b, the previous best a and the opposite end c, values y(a), y(b), y(c), by
// Brent's method as `findZeroInRange` has it. With
//
//     ratio = y(b) / y(a)     s = y(a) / y(c)     r = y(b) / y(c)
//
// the step p / q is, through all three points (inverse quadratic) or, where a is c, through two (secant),
//
//     p = ratio ((c - b) s (s - r) - (b - a) (r - 1))     q = (s - 1) (r - 1) (ratio - 1)
//     p = (c - b) ratio                                   q = 1 - ratio
//
// with the signs turned so that p is not negative (q = -q where p was positive). It is taken if it stays inside three
// quarters of the bracket and is less than half the last step,
//
//     p < 0.75 (c - b) q - |near q| / 2     p < |last q| / 2     near = 2 epsilon |b|
//
// and if that step was at least `near` long and |y(a)| > |y(b)|; else the step is the bisection (c - b) / 2. No step is
// shorter than `near`. A search ends where |c - b| / 2 <= near or y(b) = 0. All branches become selections, so that 64
// searches take every step together; one that has ended stands still until the others have.

/// As `findZeroInRange` from `previousX` to `bestX` at tolerance 0 and with 1000 steps, the same bits, for a whole
/// block. A search that is not wanted is one whose bracket begins with its zero: `bestY` is 0.0. `evaluate`(x, values)
/// gives the values of the law at a column of arguments; like this function it must be inlined, into one that is
/// compiled for vectors.
template <class Evaluate>
[[gnu::always_inline]] inline void findZeroBlock(const Evaluate& evaluate, ZeroBlock& block) {
    constexpr int mostSteps = 1000;
    constexpr double epsilon = std::numeric_limits<double>::epsilon();
    alignas(64) ZeroBlock::Column oppositeX;
    alignas(64) ZeroBlock::Column oppositeY;
    alignas(64) ZeroBlock::Column lastStep;
    alignas(64) ZeroBlock::Column nextX;
    alignas(64) ZeroBlock::Column nextY;
    alignas(64) std::int64_t searching[g_zeroBlockSize];

    // Takes search k to (x, y) with the zero between there and (otherX, otherY), and makes the better of the two ends
    // the best one. Gives all bits if the search goes on, else none. What a search that has ended holds as its previous
    // end is not looked at any more.
    const auto arrive = [&](std::size_t k, double x, double y, double otherX, double otherY, double fromX, double fromY)
        __attribute__((always_inline)) {
        const bool swapped = std::fabs(otherY) < std::fabs(y);
        const double bestX = swapped ? otherX : x;
        const double bestY = swapped ? otherY : y;
        const double opposite = swapped ? x : otherX;
        lastStep[k] = x - fromX;
        block.previousX[k] = swapped ? x : fromX;
        block.previousY[k] = swapped ? y : fromY;
        block.bestX[k] = bestX;
        block.bestY[k] = bestY;
        oppositeX[k] = opposite;
        oppositeY[k] = swapped ? y : otherY;
        const bool ended = (std::fabs((opposite - bestX) * 0.5) <= 2.0 * epsilon * std::fabs(bestX)) | (bestY == 0.0);
        searching[k] = ended ? std::int64_t{0} : std::int64_t{-1};
        return searching[k];
    };

    std::int64_t any = 0;
    for (std::size_t k = 0; k < g_zeroBlockSize; ++k)
        any |= arrive(k, block.bestX[k], block.bestY[k], block.previousX[k], block.previousY[k], block.previousX[k],
                      block.previousY[k]);
    for (int count = 0; count < mostSteps && any != 0; ++count) {
        for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
            const double previousX = block.previousX[k];
            const double previousY = block.previousY[k];
            const double bestX = block.bestX[k];
            const double bestY = block.bestY[k];
            const double otherY = oppositeY[k];
            const double near = 2.0 * epsilon * std::fabs(bestX);
            const double bracket = oppositeX[k] - bestX;
            const double half = bracket * 0.5;

            const double ratio = bestY / previousY;
            const double s = previousY / otherY;
            const double r = bestY / otherY;
            const bool twoPoints = previousX == oppositeX[k];
            const double p3 = ratio * (bracket * s * (s - r) - (bestX - previousX) * (r - 1.0));
            const double q3 = (s - 1.0) * (r - 1.0) * (ratio - 1.0);
            const double signedP = twoPoints ? bracket * ratio : p3;
            const double signedQ = twoPoints ? 1.0 - ratio : q3;
            const double p = signedP > 0.0 ? signedP : -signedP;
            const double q = signedP > 0.0 ? -signedQ : signedQ;
            const bool interpolates = (std::fabs(lastStep[k]) >= near) & (std::fabs(previousY) > std::fabs(bestY)) &
                                      (p < 0.75 * bracket * q - std::fabs(near * q) * 0.5) &
                                      (p < std::fabs(lastStep[k] * q * 0.5));
            const double free = interpolates ? p / q : half;
            const double step = std::fabs(free) < near ? std::copysign(near, half) : free;
            nextX[k] = searching[k] != 0 ? bestX + step : bestX;
        }
        evaluate(nextX, nextY);
        any = 0;
        for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
            const bool searches = searching[k] != 0;
            const double fromX = block.bestX[k];
            const double fromY = block.bestY[k];
            const double y = searches ? nextY[k] - block.y[k] : fromY;
            const bool sameSide = ((y > 0.0) & (oppositeY[k] > 0.0)) | ((y < 0.0) & (oppositeY[k] < 0.0));
            const bool passesOn = searches & sameSide;
            any |=
                arrive(k, nextX[k], y, passesOn ? fromX : oppositeX[k], passesOn ? fromY : oppositeY[k], fromX, fromY);
        }
    }
    if (any == 0)
        return;
    for (std::size_t k = 0; k < g_zeroBlockSize; ++k)  // out of steps: where the last one led
        block.bestX[k] = searching[k] != 0 ? nextX[k] : block.bestX[k];
}

}  // namespace kvan::math
