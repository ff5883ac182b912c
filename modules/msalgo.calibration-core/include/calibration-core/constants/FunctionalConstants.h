#pragma once

namespace kvan::calibration::Constants {

/// c0 and c1 as stored, of any family. The default is the identity.
struct LinearFunctionalConstants {
    double c0 = 0.0;
    double c1 = 1.0;
};

/// c0, c1 and c2 as stored. `quadraticFlag` is stored and given back; no law looks at it.
struct QuadraticFunctionalConstants : LinearFunctionalConstants {
    QuadraticFunctionalConstants() = default;
    QuadraticFunctionalConstants(double c0_, double c1_, double c2_) : LinearFunctionalConstants{c0_, c1_}, c2(c2_) {}

    double c2 = 0.0;
    bool quadraticFlag = false;
};

}  // namespace kvan::calibration::Constants
