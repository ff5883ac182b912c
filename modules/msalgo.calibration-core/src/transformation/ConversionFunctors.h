#pragma once

#include <cstdint>

namespace kvan::calibration::Transformation {

/// All that a conversion reads: plain doubles, without a virtual call or a counted pointer.
template <class RawMass, class RawIndex>
struct Law {
    using RawMassPolicy = RawMass;
    using RawIndexPolicy = RawIndex;

    RawMassPolicy rawMass;
    RawIndexPolicy rawIndex;
    double indexOffset = 0.0;
};

// One functor a conversion: the chain of the two policies and nothing else. `Cost` is what an element takes in a block,
// in nanoseconds, about.

struct MassRawTransformFunctor {
    using Source = double;
    using Destination = double;
    template <class Law>
    static constexpr double Cost = Law::RawMassPolicy::Cost;

    template <class Law, class Failure>
    [[gnu::always_inline]] static double convert(const Law& law, double mass, Failure& failure) {
        return law.rawMass.MassToRaw(mass, failure);
    }
};

struct RawMassTransformFunctor {
    using Source = double;
    using Destination = double;
    template <class Law>
    static constexpr double Cost = Law::RawMassPolicy::Cost;

    template <class Law, class Failure>
    [[gnu::always_inline]] static double convert(const Law& law, double raw, Failure& failure) {
        return law.rawMass.RawToMass(raw, failure);
    }
};

struct DIndexRawTransformFunctor {
    using Source = double;
    using Destination = double;
    template <class Law>
    static constexpr double Cost = Law::RawIndexPolicy::Cost;

    template <class Law, class Failure>
    [[gnu::always_inline]] static double convert(const Law& law, double index, Failure&) {
        return law.rawIndex.IndexToRaw(index, law.indexOffset);
    }
};

struct RawDIndexTransformFunctor {
    using Source = double;
    using Destination = double;
    template <class Law>
    static constexpr double Cost = Law::RawIndexPolicy::Cost;

    template <class Law, class Failure>
    [[gnu::always_inline]] static double convert(const Law& law, double raw, Failure&) {
        return law.rawIndex.RawToDIndex(raw, law.indexOffset);
    }
};

struct RawIndexTransformFunctor {
    using Source = double;
    using Destination = std::int32_t;
    template <class Law>
    static constexpr double Cost = Law::RawIndexPolicy::Cost;

    template <class Law, class Failure>
    [[gnu::always_inline]] static std::int32_t convert(const Law& law, double raw, Failure&) {
        return law.rawIndex.RawToIndex(raw, law.indexOffset);
    }
};

/// `First`, then `Second` on what it gave.
template <class First, class Second>
struct ComposedFunctor {
    using Source = typename First::Source;
    using Destination = typename Second::Destination;
    template <class Law>
    static constexpr double Cost = First::template Cost<Law> + Second::template Cost<Law>;

    template <class Law, class Failure>
    [[gnu::always_inline]] static Destination convert(const Law& law, Source value, Failure& failure) {
        return Second::convert(law, First::convert(law, value, failure), failure);
    }
};

/// `Functor` on a whole index.
template <class Functor>
struct WholeIndexFunctor {
    using Source = std::int32_t;
    using Destination = typename Functor::Destination;
    template <class Law>
    static constexpr double Cost = Functor::template Cost<Law>;

    template <class Law, class Failure>
    [[gnu::always_inline]] static Destination convert(const Law& law, std::int32_t index, Failure& failure) {
        return Functor::convert(law, static_cast<double>(index), failure);
    }
};

using MassDIndexTransformFunctor = ComposedFunctor<MassRawTransformFunctor, RawDIndexTransformFunctor>;
using MassIndexTransformFunctor = ComposedFunctor<MassRawTransformFunctor, RawIndexTransformFunctor>;
using DIndexMassTransformFunctor = ComposedFunctor<DIndexRawTransformFunctor, RawMassTransformFunctor>;
using IndexRawTransformFunctor = WholeIndexFunctor<DIndexRawTransformFunctor>;
using IndexMassTransformFunctor = WholeIndexFunctor<DIndexMassTransformFunctor>;

}  // namespace kvan::calibration::Transformation
