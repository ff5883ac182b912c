// Any text ends in a transformator or in an exception; what was accepted survives its text and its blob, and its
// conversions end in numbers or in the law's failure.

#include "calibration_laws.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Serialization serialization;
    fuzz::TransformatorPtr transformator;
    fuzz::succeeds([&] {
        transformator = serialization.DeserializeFromString(std::string(reinterpret_cast<const char*>(data), size));
    });
    if (!transformator)
        return 0;
    fuzz::convert(*transformator);
    fuzz::keepItsText(serialization, transformator);
    fuzz::keepItsBlob(serialization, transformator);
    return 0;
}
