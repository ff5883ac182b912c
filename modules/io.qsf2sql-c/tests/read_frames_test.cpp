// How many functions stand between an exported one and the system call that reads its bytes. The sources of that road
// are compiled into this program without optimisation, and the linker sends their `pread` through here.

#include "road.h"

#include <sample-analysis/packing.h>

#include <boost/stacktrace.hpp>
#include <iostream>

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

/// The library's log holds the lines of the road alone.
__attribute__((visibility("default"))) const char* kvan_logging_get_logconf() {
    return R"(<kvan-logconf><sink name="console" class="kvan.logging.ConsoleSink"/>
              <root level="WARN"><sink ref="console"/></root>
              <logger name="kvan.io.qsf2sql" level="TRACE"/>
              <logger name="kvan.io.qsf2sql.CacheGenerator" level="WARN"/>
              <logger name="kvan.io.qsf2sql.qsfblockedreader" level="WARN"/>
              <logger name="kvan.io.qsf2sql.vartab" level="WARN"/></kvan-logconf>)";
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
    Counts counts(5000);
    std::iota(counts.begin(), counts.end(), 0u);
    sample::ProfilePacker packer(sample::Compressor::Vlc);
    const Doubles indices(counts.begin(), counts.end());
    const auto locations = write({{.profile = packer.pack(counts),
                                   .lines = LineData{.layout = KVAN::io::QSF::LINES_DOUBLE_FLOAT, .index = indices},
                                   .info = {.acquiredUpper = 4999, .calibration = calibrationBlob(4098, {100, 0.25})}},
                                  {.profile = Floats(counts.begin(), counts.end())}},
                                 {.compressors = {sample::guidOf(sample::Compressor::Vlc)}});
    const std::uint64_t packed = locations[0].scan, plain = locations[1].scan, peaks = locations[0].lines;
    ASSERT_TRUE(Storage(mainFile())) << lastError();

    expectShortRoad("length of a packed scan", qsf2sql_array_get_num_elements, arrayId(66, packed));
    expectShortRoad("length of a plain scan", qsf2sql_array_get_num_elements, arrayId(66, plain));
    expectShortRoad("length of a line field", qsf2sql_array_get_num_elements, arrayId(16, peaks));
    expectShortRoad("packed scan", qsf2sql_array_read_uint32, arrayId(66, packed));
    expectShortRoad("plain scan", qsf2sql_array_read_double, arrayId(66, plain));
    expectShortRoad("line field as it is stored", qsf2sql_array_read_double, arrayId(16, peaks));
    expectShortRoad("line field converted", qsf2sql_array_read_float, arrayId(16, peaks));
    expectShortRoad("m/z of a line spectrum", qsf2sql_array_read_double, arrayId(22, peaks));
    expectShortRoad("m/z of a profile", qsf2sql_array_read_double, arrayId(67, packed));
}

// Two arrays are read, the m/z and the indices that they come from, and each names its steps.
TEST_F(ReadFrames, AReadOfLineMzTracesEveryStep) {
    const auto locations = write({{.lines = LineData{.index = {{1, 2}}},
                                   .info = {.acquiredUpper = 2, .calibration = calibrationBlob(4098, {100, 0.25})}}});
    const std::uint64_t peaks = locations[0].lines;
    const Storage storage(mainFile());
    float masses[2];
    testing::internal::CaptureStdout();
    EXPECT_EQ(qsf2sql_array_read_float(storage.handle(), arrayId(22, peaks), masses), 1) << lastError();
    std::istringstream log(testing::internal::GetCapturedStdout());
    std::string steps;
    for (std::string line; std::getline(log, line);)
        steps += line.substr(line.find("kvan.io") + 15, line.rfind(": 1") - line.find("kvan.io") - 15) + "\n";
    EXPECT_EQ(steps,
              ".id: getNativeStorageFormat\n"
              ": Reading from native 64-bit doubles.\n"
              ": Read array converting to float\n"
              ".id: readNativeArrayData<double>\n"
              ".id: getNativeStorageFormat\n"
              ": Reading from native 64-bit doubles.\n"
              ": Read array non-converting to double\n"
              ".id: readNativeArrayData<double>\n");
    EXPECT_EQ(masses[1], 100.5F);
}

}  // namespace
}  // namespace road
