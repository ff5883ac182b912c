#include <sysutils/environment.h>
#include <sysutils/process.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <pthread.h>
#include <pwd.h>
#include <signal.h>
#include <unistd.h>

// What the logging wants to know of its process, by calls of Linux and of the C library. Nothing here keeps state, so
// any thread may ask at any time; what a call costs is a system call or a short read of /proc.
namespace kvan::sys {

namespace {

/// Every signal is held back from the calling thread, and from the threads that it starts, while the object lives.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

/// A variable that is set to nothing counts as not set.
const char* variable(const char* name) {
    // The pointer stays good until somebody sets the variable; callers copy at once.
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

/// Empty if nobody knows it.
boost::filesystem::path homeDirectory() {
    if (const char* home = variable("HOME"))
        return home;
    std::vector<char> texts(1024);
    passwd entry{};
    passwd* found = nullptr;
    // The user database may hold entries of any length; the call says when its buffer was too small.
    while (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) == ERANGE)
        texts.resize(texts.size() * 2);
    return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
}

}  // namespace

boost::filesystem::path executablePath() {
    boost::system::error_code fault;
    // The kernel's own link: the name under which a program was started may be relative, or a name of a link.
    const auto path = boost::filesystem::read_symlink("/proc/self/exe", fault);
    if (fault || path.empty())
        BOOST_THROW_EXCEPTION(std::runtime_error("Executable path could not be determined"));
    return path;
}

boost::filesystem::path userHome() {
    const auto path = homeDirectory();
    if (path.empty())
        BOOST_THROW_EXCEPTION(std::runtime_error("User home directory could not be determined"));
    return path;
}

boost::filesystem::path userDataHome() {
    // By the rules of the XDG base directories, which give the default as well.
    if (const char* dataHome = variable("XDG_DATA_HOME"))
        return dataHome;
    const auto path = homeDirectory();
    if (path.empty())
        BOOST_THROW_EXCEPTION(std::runtime_error("User data home directory could not be determined"));
    return path / ".local" / "share";
}

std::uint64_t processId() {
    return static_cast<std::uint64_t>(::getpid());
}

std::uint64_t threadId() {
    return static_cast<std::uint64_t>(::gettid());
}

bool isTerminal(std::FILE* stream) {
    const int descriptor = ::fileno(stream);
    return descriptor >= 0 && ::isatty(descriptor) == 1;
}

bool isDebuggerAttached() {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> status(std::fopen("/proc/self/status", "re"), &std::fclose);
    // The kernel names the tracing process here, 0 if there is none.
    constexpr char key[] = "TracerPid:";
    char line[256];
    while (status && std::fgets(line, sizeof line, status.get()) != nullptr) {
        if (std::strncmp(line, key, sizeof key - 1) == 0)
            return std::strtol(line + sizeof key - 1, nullptr, 10) != 0;
    }
    return false;
}

std::thread startQuietThread(std::function<void()> work) {
    // A new thread inherits the mask of the one that starts it, so no signal falls between its start and a mask of its
    // own.
    const HeldSignals held;
    return std::thread(std::move(work));
}

void onFork(void (*before)(), void (*inParent)(), void (*inChild)()) {
    ::pthread_atfork(before, inParent, inChild);
}

}  // namespace kvan::sys
