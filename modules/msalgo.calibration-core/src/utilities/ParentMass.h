#pragma once

namespace kvan::calibration::Utilities {

/// Whether a stored parent mass tells one: 0.0 stands for none.
inline bool isParentMass(double mass) {
    return mass > 1e-12;
}

}  // namespace kvan::calibration::Utilities
