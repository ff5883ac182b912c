#pragma once

#include <string>
#include <unordered_set>

namespace kvan::io {

/// Which acquisition variables a caller wants in the cache.
struct VariablesPrefs {
    enum Mode { Minimal = 1, All = 2 };

    Mode mode = Minimal;
    /// Permanent names of variables wanted beyond the minimal set.
    std::unordered_set<std::string> requested;
};

}  // namespace kvan::io
