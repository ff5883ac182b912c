// Any bytes end in a transformator, in none, or in an exception; what was accepted survives its blob and its text, and
// its conversions end in numbers or in the law's failure.

#include "calibration_laws.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Serialization serialization;
    fuzz::TransformatorPtr transformator;
    fuzz::succeeds([&] { transformator = serialization.DeserializeFromBlob({data, data + size}); });
    if (!transformator)
        return 0;
    fuzz::convert(*transformator);
    fuzz::keepItsBlob(serialization, transformator);
    fuzz::keepItsText(serialization, transformator);
    return 0;
}
