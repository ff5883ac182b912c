#pragma once

#include <cstdint>

namespace kvan::calibration::Transformation {

/// How a law tells a failure while it converts one element: at once, by its own exception.
struct ThrowAtOnce {
    template <class Throw>
    [[gnu::always_inline]] void raiseIf(bool failed, Throw throwFailure) const {
        if (failed) [[unlikely]]
            throwFailure();
    }
};

/// How a law tells a failure inside a block: the loop stays free of branches, and whoever ran it looks at the flag
/// afterwards. An element that fails gets whatever the formula gives, mostly NaN. The flag is as wide as the elements,
/// so that it does not narrow the vectors.
struct GatherFailure {
    std::int64_t mask = 0;

    template <class Throw>
    [[gnu::always_inline]] void raiseIf(bool failed, Throw) {
        mask |= failed ? std::int64_t{-1} : std::int64_t{0};
    }
};

}  // namespace kvan::calibration::Transformation
