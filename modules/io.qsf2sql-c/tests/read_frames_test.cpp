// How many functions stand between an exported one and the system call that reads its bytes. The sources of that road
// are compiled into this program without optimisation, and the linker sends their `pread` through here.

#include "road.h"

#include <sample-analysis/packing.h>

#include <boost/stacktrace.hpp>
#include <iostream>
#include <numeric>

#include <unistd.h>

namespace {

/// The deepest stack at a system call since the watch began.
boost::stacktrace::stacktrace g_deepest;
std::size_t g_calls = 0;

void noteCall() {
    ++g_calls;
    if (const boost::stacktrace::stacktrace here; here.size() > g_deepest.size())
        g_deepest = here;
}

}  // namespace

extern "C" {

ssize_t __real_pread64(int file, void* to, std::size_t count, off64_t offset);

ssize_t __wrap_pread64(int file, void* to, std::size_t count, off64_t offset) {
    noteCall();
    return __real_pread64(file, to, count, offset);
}
}

namespace road {
namespace {

constexpr std::size_t g_mostFrames = 7;

class ReadFrames : public Road {
protected:
    /// Calls an exported function of an analysis opened anew, so that nothing is in memory.
    template <class T>
    void expectShortRoad(const char* name, int (*function)(std::uint64_t, std::uint64_t, T*), std::uint64_t id) {
        const Storage storage(mainFile());
        std::vector<T> out(10'000);
        g_deepest = {};
        g_calls = 0;
        const std::size_t outside = boost::stacktrace::stacktrace().size();
        EXPECT_EQ(function(storage.handle(), id, out.data()), 1) << lastError();
        ASSERT_GT(g_calls, 0u) << name;

        // Ours are those between `noteCall` with its wrapper and the exported function.
        const std::size_t within = g_deepest.size() - outside;
        ASSERT_GT(within, 3u) << name;
        const std::size_t between = within - 3;
        std::cout << name << ": " << between << " functions\n";
        for (std::size_t frame = within; frame-- > 1;)
            std::cout << "    " << g_deepest[frame].name() << "\n";
        EXPECT_LE(between, g_mostFrames) << name;
    }
};

TEST_F(ReadFrames, AtMostSevenFunctionsLieBetweenTheInterfaceAndTheFile) {
    std::vector<std::uint32_t> counts(5000);
    std::iota(counts.begin(), counts.end(), 0u);
    sample::ProfilePacker packer(sample::Compressor::Vlc);
    const std::vector<double> indices(counts.begin(), counts.end());
    const auto locations = write({{.profile = packer.pack(counts),
                                   .lines = LineData{.layout = KVAN::io::QSF::LINES_DOUBLE_FLOAT, .index = indices},
                                   .info = {.acquiredUpper = 4999, .calibration = calibrationBlob(4098, {100, 0.25})}},
                                  {.profile = std::vector<float>(counts.begin(), counts.end())}},
                                 {.compressors = {sample::guidOf(sample::Compressor::Vlc)}});
    const auto id = [](std::uint64_t kind, std::uint64_t offset) { return kind << 56 | offset; };
    const std::uint64_t packed = locations[0].scan, plain = locations[1].scan, peaks = locations[0].lines;
    ASSERT_TRUE(Storage(mainFile())) << lastError();

    expectShortRoad("length of a packed scan", qsf2sql_array_get_num_elements, id(66, packed));
    expectShortRoad("length of a plain scan", qsf2sql_array_get_num_elements, id(66, plain));
    expectShortRoad("length of a line field", qsf2sql_array_get_num_elements, id(16, peaks));
    expectShortRoad("packed scan", qsf2sql_array_read_uint32, id(66, packed));
    expectShortRoad("plain scan", qsf2sql_array_read_double, id(66, plain));
    expectShortRoad("line field as it is stored", qsf2sql_array_read_double, id(16, peaks));
    expectShortRoad("line field converted", qsf2sql_array_read_float, id(16, peaks));
    expectShortRoad("m/z of a line spectrum", qsf2sql_array_read_double, id(22, peaks));
    expectShortRoad("m/z of a profile", qsf2sql_array_read_double, id(67, packed));
}

}  // namespace
}  // namespace road
