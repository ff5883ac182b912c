#pragma once

#include <cstdint>

namespace kvan::io::qsf2sql::passes {

/// What the main file says that the extra file is understood by.
struct AnalysisFacts {
    double timebase = -1.0;  ///< seconds a tick
    std::uint16_t instrumentFamily = 0;
};

}  // namespace kvan::io::qsf2sql::passes
