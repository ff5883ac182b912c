#include "transformation/BatchTransformation.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string>

#include <omp.h>

// Blocks of some thousand elements for a team of threads. The result does not depend on how many there are: blocks are
// independent and a law has no state. A thread that failed leaves its further blocks out, the others go on, and the
// caller learns only that something failed.
//
// A team is woken only where the work is worth it. No fork inside a parallel region of the caller.
namespace kvan::calibration::Transformation {

namespace {

/// Elements a block: 32 KiB of doubles, long against the handing out of a block and short against an array.
constexpr std::size_t g_blockSize = 4096;

/// Nanoseconds of work from which a fork pays: waking a team costs microseconds, beside a busy neighbour milliseconds.
constexpr double g_workWorthForking = 500'000.0;

}  // namespace

bool insideParallelRegion() {
    return omp_in_parallel() != 0;
}

bool convertBlocks(std::size_t count, double cost, const BlockConversion& convert) {
    // The cost decides, not the count: a cheap law needs a longer array.
    const bool fork = static_cast<double>(count) * cost >= g_workWorthForking && omp_get_max_threads() > 1;
    const auto blocks = static_cast<std::int64_t>((count + g_blockSize - 1) / g_blockSize);
    bool failed = false;  // each thread has its own in the loop; from its first failure on it skips its blocks
#pragma omp parallel for schedule(dynamic, 1) reduction(|| : failed) if (fork)
    for (std::int64_t block = 0; block < blocks; ++block) {
        const std::size_t begin = static_cast<std::size_t>(block) * g_blockSize;
        if (!failed)
            failed = convert(begin, std::min(begin + g_blockSize, count));
    }
    return failed;
}

void throwTransformationFailed() {
    BOOST_THROW_EXCEPTION(std::runtime_error("Transformation failed, most likely due to bad calibration constants."));
}

void throwInvalidRange(std::int32_t first, std::int32_t last) {
    BOOST_THROW_EXCEPTION(std::invalid_argument(
        "Kvan::CCO::Functors::RangeTransformation(TTransformationFunctor transFunctor, boost::int32_t first, "
        "boost::int32_t last, TDest & dest): invalid transformation: range invalid: last < first with last = " +
        std::to_string(last) + " and first = " + std::to_string(first)));
}

}  // namespace kvan::calibration::Transformation
