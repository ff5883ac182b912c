#pragma once

#include <cstddef>

namespace archives {

/// Watches for the largest piece of memory that the program asks for during the life of the object; one at a time.
/// Sees none under a sanitizer.
class LargestAllocation {
public:
    LargestAllocation();
    ~LargestAllocation();
    LargestAllocation(const LargestAllocation&) = delete;
    LargestAllocation& operator=(const LargestAllocation&) = delete;

    std::size_t bytes() const;
};

}  // namespace archives
