#pragma once

namespace kvan::calibration {

/// The families of calibrations, by the code that texts hold as their strategy and `GetFunctionalTypeCode` gives.
enum class CalibrationFamily : int {
    Tof = 1,
    Paladin = 2,
    Ftms = 3,
    Linear = 4,
    WithoutReference = 5,  ///< of no transformator made here; an archive applies no reference to it
    Psd = 6,
    Kite1 = 7,
    CompensatedTof = 9,  ///< time of flight with temperature compensation
    Kite2 = 10,
    Tof2 = 12,
    CompensatedTof2 = 13  ///< the second generation with temperature compensation
};

constexpr int codeOf(CalibrationFamily family) {
    return static_cast<int>(family);
}

/// The family of a transformator or of functional constants.
template <class Coded>
CalibrationFamily familyOf(const Coded& coded) {
    return CalibrationFamily{coded.GetFunctionalTypeCode()};
}

/// What the functional constants of a transformator are: those of its law, out of which another one can be made, those
/// of the time axis inside, or nothing that it gives or takes.
enum class HeldConstants { OfTheLaw, OfTheAxis, None };

/// What matters of a family to whoever changes a calibration.
struct CalibrationFamilyTraits {
    CalibrationFamily family;
    CalibrationFamily plain;  ///< the family without temperatures that computes as it does, or it itself
    HeldConstants constants;
};

/// The family's row of the one table of families. A code that no family here has stands for itself, with constants of
/// its law.
CalibrationFamilyTraits traitsOf(CalibrationFamily family);

}  // namespace kvan::calibration
