// A program that uses the logging as a host does. Its configuration comes out of the variables HOST_LOGCONF and
// HOST_LOGCONF_PATH; what it does, out of its arguments.

#include <logger/logger.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

using kvan::logging::Logger;

extern "C" {
__attribute__((visibility("default"))) const char* kvan_logging_get_logconf() {
    std::fputs("asked\n", stderr);
    KVAN_LOG(Logger::getLogger("host.callback"), FATAL) << "comes back to the library";
    return std::getenv("HOST_LOGCONF");
}
__attribute__((visibility("default"))) const char* kvan_logging_get_logconf_path() {
    return std::getenv("HOST_LOGCONF_PATH");
}
}

namespace {

void writeLines(const std::string& who, int lines) {
    const Logger logger = Logger::getLogger("host.thread");
    for (int line = 0; line < lines; ++line)
        KVAN_LOG(logger, WARN) << who << ' ' << line << '.';
}

/// Whoever drops them waits for their end.
std::vector<std::jthread> startThreads(int count, int lines) {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < count; ++thread)
        threads.emplace_back([=] { writeLines("thread " + std::to_string(thread), lines); });
    return threads;
}

int forkOften(int children) {
    const auto threads = startThreads(3, 2000);
    int failures = 0;
    for (int child = 0; child < children; ++child) {
        const pid_t process = ::fork();
        if (process == 0) {
            writeLines("child " + std::to_string(child), 50);
            std::exit(0);
        }
        int status = 0;
        failures += ::waitpid(process, &status, 0) != process || status != 0 ? 1 : 0;
    }
    return failures;
}

/// Every module has a copy of the logging of its own.
int useModules(const char* path) {
    writeLines("program", 1);
    for (int round = 0; round < 3; ++round) {
        void* module = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr)
            return 1;
        reinterpret_cast<void (*)(const char*)>(::dlsym(module, "log_from_module"))("module");
        ::dlclose(module);
    }
    return 0;
}

/// Goes when the logging has ended; what it logs is lost without harm.
struct LateLogger {
    ~LateLogger() { writeLines("late", 1); }
} g_late;

}  // namespace

int main(int count, char** arguments) {
    const std::string command = count > 1 ? arguments[1] : "";
    if (command == "lines") {
        startThreads(std::atoi(arguments[2]), std::atoi(arguments[3]));
    } else if (command == "exit") {
        for (std::jthread& thread : startThreads(3, 1000000000))
            thread.detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::exit(0);
    } else if (command == "fork") {
        return forkOften(std::atoi(arguments[2]));
    } else if (command == "modules") {
        return useModules(arguments[2]);
    }
    return 0;
}
