#pragma once

#include <cstdint>

/// Polarity as the archive numbers it and the cache's `AcquisitionKeys.Polarity` does.
enum EPolarity : std::uint32_t { POLARITY_POSITIVE = 0, POLARITY_NEGATIVE = 1, POLARITY_UNKNOWN = 2 };
