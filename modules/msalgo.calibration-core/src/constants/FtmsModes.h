#pragma once

namespace kvan::calibration::Constants {

/// Which law a calibration mode of Fourier transform instruments stands for.
enum class FtmsLaw {
    Linear,         ///< raw = freqHigh / mass - beta
    Quadratic,      ///< raw = alpha / mass^2 + freqHigh / mass + beta
    ConstantsOnly,  ///< constants as those of the quadratic law, but no transformator
    Index,          ///< counts indices: neither functional constants nor a transformator
    Unknown
};

/// How the frequency axis spans its points.
enum class FtmsAxis {
    EndToEnd,    ///< the last point lies on the low end of the window: size - 1 steps
    WithoutEnd,  ///< one step before it: size steps
    Index,       ///< raw is the index
    Unknown
};

struct FtmsMode {
    FtmsLaw law = FtmsLaw::Unknown;
    FtmsAxis axis = FtmsAxis::Unknown;
};

/// What the mode with this code says, as blobs, texts and constants number it; unknown for anything but 0 to 6.
constexpr FtmsMode ftmsModeOf(int code) {
    constexpr FtmsMode modes[] = {
        {FtmsLaw::Linear, FtmsAxis::EndToEnd},           // 0
        {FtmsLaw::Quadratic, FtmsAxis::EndToEnd},        // 1
        {FtmsLaw::Index, FtmsAxis::Index},               // 2
        {FtmsLaw::ConstantsOnly, FtmsAxis::EndToEnd},    // 3
        {FtmsLaw::Linear, FtmsAxis::WithoutEnd},         // 4
        {FtmsLaw::Quadratic, FtmsAxis::WithoutEnd},      // 5
        {FtmsLaw::ConstantsOnly, FtmsAxis::WithoutEnd},  // 6
    };
    return code >= 0 && code <= 6 ? modes[code] : FtmsMode{};
}

}  // namespace kvan::calibration::Constants
