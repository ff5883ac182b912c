#pragma once

#include <cstdint>

namespace kvan {

/// Polarity of the ions, as records, calibration keys, archives and the cache's `AcquisitionKeys.Polarity` number it.
/// Keys of one byte hold 255 for an unknown one.
enum EPolarity : std::uint32_t { POLARITY_POSITIVE = 0, POLARITY_NEGATIVE = 1, POLARITY_UNKNOWN = 2 };

}  // namespace kvan
