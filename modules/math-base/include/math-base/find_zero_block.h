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
    alignas(64) ZeroBlock::Column nextX;
    alignas(64) ZeroBlock::Column nextY;
    alignas(64) std::int64_t searching[g_zeroBlockSize];
    for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
        oppositeX[k] = block.previousX[k];
        oppositeY[k] = block.previousY[k];
    }
    for (int count = 0; count < mostSteps; ++count) {
        std::int64_t any = 0;
        for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
            const double lastStep = block.bestX[k] - block.previousX[k];
            const bool swapped = std::fabs(oppositeY[k]) < std::fabs(block.bestY[k]);
            const double previousX = swapped ? block.bestX[k] : block.previousX[k];
            const double previousY = swapped ? block.bestY[k] : block.previousY[k];
            const double bestX = swapped ? oppositeX[k] : block.bestX[k];
            const double bestY = swapped ? oppositeY[k] : block.bestY[k];
            const double otherX = swapped ? block.bestX[k] : oppositeX[k];
            const double otherY = swapped ? block.bestY[k] : oppositeY[k];

            const double near = 2.0 * epsilon * std::fabs(bestX);
            const double bracket = otherX - bestX;
            const double half = bracket * 0.5;
            const bool searches = !((std::fabs(half) <= near) | (bestY == 0.0));

            const double ratio = bestY / previousY;
            const double s = previousY / otherY;
            const double r = bestY / otherY;
            const bool twoPoints = previousX == otherX;
            const double p3 = ratio * (bracket * s * (s - r) - (bestX - previousX) * (r - 1.0));
            const double q3 = (s - 1.0) * (r - 1.0) * (ratio - 1.0);
            const double signedP = twoPoints ? bracket * ratio : p3;
            const double signedQ = twoPoints ? 1.0 - ratio : q3;
            const double p = signedP > 0.0 ? signedP : -signedP;
            const double q = signedP > 0.0 ? -signedQ : signedQ;
            const bool interpolates = (std::fabs(lastStep) >= near) & (std::fabs(previousY) > std::fabs(bestY)) &
                                      (p < 0.75 * bracket * q - std::fabs(near * q) * 0.5) &
                                      (p < std::fabs(lastStep * q * 0.5));
            const double free = interpolates ? p / q : half;
            const double step = std::fabs(free) < near ? std::copysign(near, half) : free;

            block.previousX[k] = bestX;  // of a search that has ended it is not looked at any more
            block.previousY[k] = bestY;
            block.bestX[k] = bestX;
            block.bestY[k] = bestY;
            oppositeX[k] = otherX;
            oppositeY[k] = otherY;
            nextX[k] = searches ? bestX + step : bestX;
            searching[k] = searches ? std::int64_t{-1} : std::int64_t{0};
            any |= searching[k];
        }
        if (any == 0)
            return;
        evaluate(nextX, nextY);
        for (std::size_t k = 0; k < g_zeroBlockSize; ++k) {
            const double y = nextY[k] - block.y[k];
            const bool searches = searching[k] != 0;
            const bool sameSide = ((y > 0.0) & (oppositeY[k] > 0.0)) | ((y < 0.0) & (oppositeY[k] < 0.0));
            oppositeX[k] = (searches & sameSide) ? block.previousX[k] : oppositeX[k];
            oppositeY[k] = (searches & sameSide) ? block.previousY[k] : oppositeY[k];
            block.bestX[k] = searches ? nextX[k] : block.bestX[k];
            block.bestY[k] = searches ? y : block.bestY[k];
        }
    }
}

}  // namespace kvan::math
