// The cost of a line: switched off, to a null sink, to a file, and through the asynchronous sink.

#include "ratio.h"

#include <logger/logger.h>

#include <boost/chrono/system_clocks.hpp>
#include <boost/filesystem/operations.hpp>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#ifdef QSF_HAS_SPDLOG
#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace {

namespace fs = boost::filesystem;
using benchmarks::reportRatio;
using boost::chrono::steady_clock;
using kvan::logging::Logger;

constexpr int g_lines = 20000;
constexpr int g_manyLines = 1000000;

/// The log files of the program, and the configuration that names them.
struct Directory {
    Directory() : path(fs::temp_directory_path() / fs::unique_path()) { fs::create_directory(path); }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory() { fs::remove_all(path); }

    std::string at(const char* name) const { return (path / name).string(); }

    fs::path path;
};

const Directory& directory() {
    static const Directory instance;
    return instance;
}

std::string configuration() {
    const auto file = [](const std::string& name) {
        return "<sink name='" + name + "' class='kvan.logging.RollingFileSink'><file-path>" +
               directory().at((name + ".log").c_str()) + "</file-path><max-file-size>0</max-file-size></sink>";
    };
    return "<kvan-logconf><sink name='none' class='kvan.logging.NullSink'/>" + file("file") + file("thread") +
           file("whole") +
           "<sink name='async' class='kvan.logging.AsyncSink'><sink ref='thread'/></sink>"
           "<sink name='end' class='kvan.logging.AsyncSink'><sink ref='whole'/></sink>"
           "<root><sink ref='none'/></root><logger name='file'><sink ref='file'/></logger>"
           "<logger name='async'><sink ref='async'/></logger>"
           "<logger name='end'><sink ref='end'/></logger></kvan-logconf>";
}

void disabled(benchmark::State& state) {
    const Logger logger = Logger::getLogger("off");
    const auto loop = [](const auto& line) {
        for (int i = 0; i < g_manyLines; ++i) {
            line(i);
            benchmark::ClobberMemory();
        }
    };
    reportRatio(
        state, 0, [&] { loop([&](int i) { KVAN_LOG(logger, DEBUG) << "line " << i; }); },
        [&] { loop([](int i) { benchmark::DoNotOptimize(i); }); });
}
BENCHMARK(disabled)->UseManualTime()->Iterations(100);

void writeLines(const Logger& logger, int lines) {
    for (int i = 0; i < lines; ++i)
        logger.write(kvan::logging::Level::INFO, "spectrum 12345: no calibration for its key, the stored one is used");
}

/// Against the same line through the file sink.
void nullSink(benchmark::State& state) {
    const Logger none = Logger::getLogger("none");
    const Logger file = Logger::getLogger("file");
    reportRatio(
        state, 0, [&] { writeLines(none, g_lines); }, [&] { writeLines(file, g_lines); });
}
BENCHMARK(nullSink)->UseManualTime()->Iterations(20);

/// The median of what one line of a million costs its caller, in nanoseconds, against the goal of 1000.
void asyncCaller(benchmark::State& state) {
    const Logger logger = Logger::getLogger("async");
    std::vector<double> nanoseconds;
    nanoseconds.reserve(g_manyLines);
    for (auto _ : state) {
        nanoseconds.clear();
        for (int i = 0; i < g_manyLines; ++i) {
            const auto start = steady_clock::now();
            KVAN_LOG(logger, INFO) << "spectrum " << i << ": no calibration for its key, the stored one is used";
            nanoseconds.push_back(static_cast<double>((steady_clock::now() - start).count()));
        }
        state.SetIterationTime(1);
    }
    state.counters["subject_us"] = benchmarks::median(nanoseconds) / 1000;
    state.counters["yardstick_us"] = 1;
    state.counters["ratio"] = benchmarks::median(nanoseconds) / 1000;
    state.counters["goal"] = 1;
}
BENCHMARK(asyncCaller)->UseManualTime()->Iterations(1);

#ifdef QSF_HAS_SPDLOG

void writeLines(spdlog::logger& logger, int lines) {
    for (int i = 0; i < lines; ++i)
        logger.info("spectrum 12345: no calibration for its key, the stored one is used");
}

constexpr const char* g_pattern = "%Y-%m-%d %H:%M:%S.%f [tid=0x%t] [%-5l] %n: %v";

/// Against spdlog's file sink, the same line and a flush each.
void fileSink(benchmark::State& state) {
    const Logger ours = Logger::getLogger("file");
    const auto theirs = spdlog::basic_logger_mt("file", directory().at("theirs.log"));
    theirs->set_pattern(g_pattern);
    theirs->flush_on(spdlog::level::info);
    reportRatio<steady_clock>(
        state, 1.5, [&] { writeLines(ours, g_lines); }, [&] { writeLines(*theirs, g_lines); });
    spdlog::drop_all();
}
BENCHMARK(fileSink)->UseManualTime()->Iterations(20);

/// A log file that another thread fills, line by line of one size.
class FilledFile {
public:
    template <class WriteOne>
    FilledFile(std::string path, WriteOne writeOne) : m_path(std::move(path)) {
        writeOne();
        while (size() == 0)
            std::this_thread::yield();
        m_lineSize = size();
    }

    /// Returns when the lines that `write` gives out have all arrived.
    template <class Write>
    void fill(int lines, Write write) {
        const std::uintmax_t goal = size() + static_cast<std::uintmax_t>(lines) * m_lineSize;
        write(lines);
        while (size() < goal)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
    }

private:
    std::uintmax_t size() const { return fs::file_size(m_path); }

    std::string m_path;
    std::uintmax_t m_lineSize = 0;
};

/// Until the last line is in the file, against spdlog's asynchronous logger in front of its file sink, a flush each
/// line.
void asyncSink(benchmark::State& state) {
    const Logger ours = Logger::getLogger("end.to.end");
    spdlog::init_thread_pool(8192, 1);
    const auto theirs = spdlog::basic_logger_mt<spdlog::async_factory>("async", directory().at("theirs_async.log"));
    theirs->set_pattern(g_pattern);
    theirs->flush_on(spdlog::level::info);
    const auto writeOurs = [&](int lines) { writeLines(ours, lines); };
    const auto writeTheirs = [&](int lines) { writeLines(*theirs, lines); };
    FilledFile ourFile(directory().at("whole.log"), [&] { writeOurs(1); });
    FilledFile theirFile(directory().at("theirs_async.log"), [&] { writeTheirs(1); });
    reportRatio<steady_clock>(
        state, 1.5, [&] { ourFile.fill(g_lines, writeOurs); }, [&] { theirFile.fill(g_lines, writeTheirs); });
    spdlog::shutdown();
}
BENCHMARK(asyncSink)->UseManualTime()->Iterations(20);

#endif

}  // namespace

extern "C" __attribute__((visibility("default"))) const char* kvan_logging_get_logconf() {
    static const std::string document = configuration();
    return document.c_str();
}
