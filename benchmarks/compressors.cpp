// Decoding the arrays of the native files against zlib, against StreamVByte where it is installed, and one kind of
// data against another. Every work decodes several spectra in turn, since one small array again and again is learnt by
// the branch predictor.

#include "profile_arrays.h"
#include "ratio.h"

#include <compression/compressor_registry.h>

#include <boost/throw_exception.hpp>
#include <boost/uuid/string_generator.hpp>
#include <functional>
#include <stdexcept>

#include <zlib.h>

#ifdef QSF_HAS_STREAMVBYTE
#include <streamvbytedelta.h>
#endif

namespace {

using benchmarks::ProfileKind;
using Profile = std::vector<std::uint32_t>;
using Bytes = std::vector<unsigned char>;
using Work = std::function<void()>;
using kvan::compression::ICompressor;

constexpr char g_vlc[] = "4F1EA0CB-5A6A-43ED-9562-D6D873034577";
constexpr char g_vli2[] = "7F88E97F-2038-40ba-8F3A-FCA9A9719569";
constexpr char g_zlib[] = "6BB2E64A-27A0-4575-A66A-4E312C8B9AD7";

std::vector<Profile> profiles(ProfileKind kind, std::size_t count) {
    const std::size_t spectra = count < 100'000 ? 64 : 6;
    std::vector<Profile> made;
    for (unsigned seed = 1; seed <= spectra; ++seed)
        made.push_back(benchmarks::makeProfile(kind, count, seed));
    return made;
}

/// What all `blocks` decode to is compared with `profiles` once; the work then decodes one after the other.
template <class Decode>
Work decoding(std::vector<Bytes> blocks, const std::vector<Profile>& profiles, Decode decode) {
    Profile decoded(profiles.front().size());
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        decode(blocks[index], decoded);
        if (decoded != profiles[index])
            BOOST_THROW_EXCEPTION(std::runtime_error("decodes to other elements"));
    }
    return [blocks = std::move(blocks), decoded, decode]() mutable {
        for (const Bytes& block : blocks)
            decode(block, decoded);
        benchmark::DoNotOptimize(decoded.data());
    };
}

Work compressor(const char* id, const std::vector<Profile>& profiles) {
    const auto coder = kvan::compression::getCompressor(boost::uuids::string_generator()(id));
    std::vector<Bytes> blocks;
    for (const Profile& profile : profiles) {
        unsigned char* bytes = nullptr;
        unsigned size = 0;
        coder->Compress(profile.data(), static_cast<unsigned>(profile.size()), &bytes, &size);
        blocks.emplace_back(bytes, bytes + size);
    }
    return decoding(blocks, profiles,
                    [coder](const Bytes& block, Profile& decoded) { coder->Decompress(block, decoded); });
}

std::vector<Bytes> deflated(const std::vector<Profile>& profiles, int level) {
    std::vector<Bytes> blocks;
    for (const Profile& profile : profiles) {
        uLongf size = compressBound(profile.size() * 4);
        Bytes block(size);
        compress2(block.data(), &size, reinterpret_cast<const Bytef*>(profile.data()), profile.size() * 4, level);
        block.resize(size);
        blocks.push_back(std::move(block));
    }
    return blocks;
}

void bareInflate(const Bytes& block, Profile& decoded) {
    uLongf size = decoded.size() * 4;
    uncompress(reinterpret_cast<Bytef*>(decoded.data()), &size, block.data(), block.size());
}

void againstInflate(benchmark::State& state, const char* id, ProfileKind kind, double goal) {
    const auto arrays = profiles(kind, static_cast<std::size_t>(state.range(0)));
    benchmarks::reportRatio(state, goal, compressor(id, arrays), decoding(deflated(arrays, 6), arrays, bareInflate));
}

/// Streams of zlib's own making against zlib.
void zlibStreams(benchmark::State& state, int level) {
    const auto arrays = profiles(ProfileKind::Noisy, static_cast<std::size_t>(state.range(0)));
    const auto blocks = deflated(arrays, level);
    const auto coder = kvan::compression::getCompressor(boost::uuids::string_generator()(g_zlib));
    const auto decode = [coder](const Bytes& block, Profile& decoded) { coder->Decompress(block, decoded); };
    benchmarks::reportRatio(state, 1.15, decoding(blocks, arrays, decode), decoding(blocks, arrays, bareInflate));
}

/// One kind of data in the place of another, by the element.
void againstFastest(benchmark::State& state, const char* id, ProfileKind kind, ProfileKind fastest) {
    const auto points = static_cast<std::size_t>(state.range(0));
    benchmarks::reportRatio(state, 1.25, compressor(id, profiles(kind, points)),
                            compressor(id, profiles(fastest, points)));
}

#ifdef QSF_HAS_STREAMVBYTE
void againstStreamVByte(benchmark::State& state, const char* id, ProfileKind kind, double goal) {
    const auto arrays = profiles(kind, static_cast<std::size_t>(state.range(0)));
    std::vector<Bytes> blocks;
    for (const Profile& array : arrays) {
        Bytes block(array.size() * 5 + 16);
        block.resize(16 +
                     streamvbyte_delta_encode(array.data(), static_cast<std::uint32_t>(array.size()), block.data(), 0));
        blocks.push_back(std::move(block));
    }
    const auto decode = [](const Bytes& block, Profile& decoded) {
        streamvbyte_delta_decode(block.data(), decoded.data(), static_cast<std::uint32_t>(decoded.size()), 0);
    };
    benchmarks::reportRatio(state, goal, compressor(id, arrays), decoding(blocks, arrays, decode));
}
BENCHMARK_CAPTURE(againstStreamVByte, vlc_noisy, g_vlc, ProfileKind::Noisy, 1.0)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(againstStreamVByte, vlc_sparse, g_vlc, ProfileKind::Sparse, 1.0)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(againstStreamVByte, vlc_small, g_vlc, ProfileKind::Noisy, 1.0)->Arg(5'000)->UseManualTime();
#endif

BENCHMARK_CAPTURE(againstInflate, vlc_noisy, g_vlc, ProfileKind::Noisy, 0.25)
    ->Arg(200'000)
    ->Arg(5'000)
    ->UseManualTime();
BENCHMARK_CAPTURE(againstInflate, vlc_quiet, g_vlc, ProfileKind::Quiet, 0.25)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(againstInflate, vlc_sparse, g_vlc, ProfileKind::Sparse, 0.25)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(againstFastest, vlc_noisy, g_vlc, ProfileKind::Noisy, ProfileKind::Sparse)
    ->Arg(200'000)
    ->UseManualTime();
BENCHMARK_CAPTURE(againstFastest, vlc_quiet, g_vlc, ProfileKind::Quiet, ProfileKind::Sparse)
    ->Arg(200'000)
    ->UseManualTime();
BENCHMARK_CAPTURE(againstInflate, vli2_noisy, g_vli2, ProfileKind::Noisy, 1 / 3.5)
    ->Arg(200'000)
    ->Arg(5'000)
    ->UseManualTime();
BENCHMARK_CAPTURE(againstInflate, vli2_quiet, g_vli2, ProfileKind::Quiet, 1 / 3.5)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(againstInflate, vli2_sparse, g_vli2, ProfileKind::Sparse, 1 / 8.0)->Arg(200'000)->UseManualTime();
BENCHMARK_CAPTURE(zlibStreams, level_6, 6)->Arg(200'000)->Arg(5'000)->UseManualTime();
BENCHMARK_CAPTURE(zlibStreams, level_0, 0)->Arg(200'000)->Arg(5'000)->UseManualTime();

}  // namespace
