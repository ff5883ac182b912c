#pragma once

#include "transformation/LawKernels.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace kvan::calibration::Transformation {

/// Elements from which a batch, and indices from which a range, counts as parallel work: its failure has one text for
/// all laws, whether or not more than one thread took part.
inline constexpr std::size_t g_parallelBatchSize = 100;
inline constexpr std::size_t g_parallelRangeSize = 8;

/// Whether the caller stands inside a parallel region, where no further one may be forked.
bool insideParallelRegion();

/// Converts the elements from `begin` up to `end`; true if one of them failed. Must not throw.
using BlockConversion = std::function<bool(std::size_t begin, std::size_t end)>;

/// Runs `convert` over blocks of [0, count), by a team if the whole takes long enough, at `cost` nanoseconds an
/// element. True if an element failed; blocks may then be left out.
bool convertBlocks(std::size_t count, double cost, const BlockConversion& convert);

/// "Transformation failed, most likely due to bad calibration constants.", without a trace of the first failure.
[[noreturn]] void throwTransformationFailed();

/// "invalid transformation: range invalid: ..."
[[noreturn]] void throwInvalidRange(std::int32_t first, std::int32_t last);

/// Makes `values` hold `count` elements whose content does not matter, without copying old ones to a new place.
template <class Value>
void resizeForOverwrite(std::vector<Value>& values, std::size_t count) {
    if (values.capacity() < count)
        values.clear();
    values.resize(count);
}

/// Converts one chunk in order. `gather` fills the chunk's results without exceptions and says whether one failed;
/// only then `convert`, with the exceptions of the law, goes through the elements one by one up to the one that fails.
template <class Value, class Gather, class Convert, class Store>
void convertInOrder(std::size_t count, Gather gather, Convert convert, Store store) {
    constexpr std::size_t chunkSize = 256;
    Value results[chunkSize];
    for (std::size_t begin = 0; begin < count; begin += chunkSize) {
        const std::size_t size = std::min(chunkSize, count - begin);
        if (!gather(begin, results, size)) {
            store(begin, results, size);
            continue;
        }
        for (std::size_t k = begin; k < begin + size; ++k) {
            results[0] = convert(k);
            store(k, results, 1);
        }
    }
}

/// Converts `source` into `destination`, which may be the same vector.
template <class Functor, class Law>
void BatchTransformation(const Law& law, const std::vector<typename Functor::Source>& source,
                         std::vector<typename Functor::Destination>& destination) {
    using Destination = typename Functor::Destination;
    const std::size_t count = source.size();
    const bool inOrder = count < g_parallelBatchSize || insideParallelRegion();
    if (inOrder && static_cast<const void*>(&source) != &destination)
        destination.assign(count, Destination{});  // elements after one that fails hold nothing old
    else
        resizeForOverwrite(destination, count);
    if (count == 0)
        return;
    const auto* const in = source.data();
    Destination* const out = destination.data();
    if (inOrder) {
        convertInOrder<Destination>(
            count,
            [&](std::size_t begin, Destination* results, std::size_t size) {
                return convertBlock<Functor>(law, in + begin, results, size);
            },
            [&](std::size_t k) {
                ThrowAtOnce failure;
                return Functor::convert(law, in[k], failure);
            },
            [&](std::size_t begin, const Destination* results, std::size_t size) {
                std::copy_n(results, size, out + begin);
            });
        return;
    }
    const auto convert = [&](std::size_t begin, std::size_t end) {
        return convertBlock<Functor>(law, in + begin, out + begin, end - begin);
    };
    if (convertBlocks(count, Functor::template Cost<Law>, std::cref(convert)))
        throwTransformationFailed();
}

/// Converts the indices `first` to `last`, both included.
template <class Functor, class Law>
void RangeTransformation(const Law& law, std::int32_t first, std::int32_t last,
                         std::vector<typename Functor::Destination>& destination) {
    using Destination = typename Functor::Destination;
    if (last < first)
        throwInvalidRange(first, last);
    const auto count = static_cast<std::size_t>(std::int64_t{last} - first + 1);
    const auto indexAt = [&](std::size_t k) { return static_cast<std::int32_t>(first + static_cast<std::int64_t>(k)); };
    if (count < g_parallelRangeSize || insideParallelRegion()) {
        destination.clear();
        destination.reserve(count);
        convertInOrder<Destination>(
            count,
            [&](std::size_t begin, Destination* results, std::size_t size) {
                return convertRange<Functor>(law, indexAt(begin), results, static_cast<std::int32_t>(size));
            },
            [&](std::size_t k) {
                ThrowAtOnce failure;
                return Functor::convert(law, indexAt(k), failure);
            },
            [&](std::size_t, const Destination* results, std::size_t size) {
                destination.insert(destination.end(), results, results + size);
            });
        return;
    }
    resizeForOverwrite(destination, count);
    Destination* const out = destination.data();
    const auto convert = [&](std::size_t begin, std::size_t end) {
        return convertRange<Functor>(law, indexAt(begin), out + begin, static_cast<std::int32_t>(end - begin));
    };
    if (convertBlocks(count, Functor::template Cost<Law>, std::cref(convert)))
        throwTransformationFailed();
}

}  // namespace kvan::calibration::Transformation
