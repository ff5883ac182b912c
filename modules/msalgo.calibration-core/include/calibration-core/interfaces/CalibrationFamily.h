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

/// The family without temperatures that computes as `family` does; `family` itself if it has none.
constexpr CalibrationFamily plainFamilyOf(CalibrationFamily family) {
    switch (family) {
        case CalibrationFamily::CompensatedTof:
            return CalibrationFamily::Tof;
        case CalibrationFamily::CompensatedTof2:
            return CalibrationFamily::Tof2;
        default:
            return family;
    }
}

}  // namespace kvan::calibration
