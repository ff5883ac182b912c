#include <sysutils/platform.h>

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <iterator>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

// The files of the platform seam on Linux. Every descriptor is opened with O_CLOEXEC, so that no program that the host
// starts inherits it, and is closed by its object. Reads and writes that a signal interrupts are made again. A fault of
// the system is a value for the caller to judge: a null object, a code, or a count that is too small.
namespace kvan::sys {

namespace {

class Descriptor {
public:
    // A negative number is no descriptor: a call that failed makes an object that closes nothing.
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : m_descriptor(other.release()) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    int get() const { return m_descriptor; }
    int release() {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor;
    }

private:
    int m_descriptor;
};

boost::system::error_code lastFault() {
    return {errno, boost::system::system_category()};
}

// Of the open file, not of its name: what the name leads to may change between the two.
bool isRegular(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Gives how many bytes the system took. A disk that is nearly full may take a part; the rest is offered again until
/// nothing is taken.
std::size_t writeAll(int descriptor, std::string_view bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            break;
        done += static_cast<std::size_t>(put);
    }
    return done;
}

/// A name may have been given to another file between the opening and the locking.
bool isStillNamed(int descriptor, const char* name) {
    struct stat held {};
    struct stat named {};
    return ::fstat(descriptor, &held) == 0 && ::lstat(name, &named) == 0 && held.st_dev == named.st_dev &&
           held.st_ino == named.st_ino;
}

class LinuxPositionedFile final : public PositionedFile {
public:
    explicit LinuxPositionedFile(Descriptor descriptor) : m_descriptor(std::move(descriptor)) {}

    // pread leaves the position of the descriptor alone, so threads do not disturb one another.
    std::int64_t readAt(void* destination, std::int64_t count, std::uint64_t offset) override {
        char* const bytes = static_cast<char*>(destination);
        std::int64_t done = 0;
        while (done < count) {
            const ssize_t got = ::pread(m_descriptor.get(), bytes + done, static_cast<std::size_t>(count - done),
                                        static_cast<off_t>(offset + static_cast<std::uint64_t>(done)));
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return -1;
            // The end of the file; a part that came before it counts.
            if (got == 0)
                break;
            done += got;
        }
        return done;
    }

    std::uint64_t size() const override {
        struct stat status {};
        return ::fstat(m_descriptor.get(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
    }

private:
    Descriptor m_descriptor;
};

class LinuxPrivateFile final : public PrivateFile {
public:
    LinuxPrivateFile(Descriptor descriptor, boost::filesystem::path path)
        : m_descriptor(std::move(descriptor)), m_path(std::move(path)) {}
    LinuxPrivateFile(const LinuxPrivateFile&) = delete;
    LinuxPrivateFile& operator=(const LinuxPrivateFile&) = delete;
    ~LinuxPrivateFile() override {
        if (!m_kept)
            ::unlink(m_path.c_str());
    }

    const boost::filesystem::path& path() const override { return m_path; }

    bool append(const std::string& bytes) override { return writeAll(m_descriptor.get(), bytes) == bytes.size(); }

    // Written at the end always (O_APPEND), so that nothing has to be moved back after a cut.
    bool clear() override { return ::ftruncate(m_descriptor.get(), 0) == 0; }

    boost::system::error_code moveTo(const boost::filesystem::path& target) override {
        if (std::rename(m_path.c_str(), target.c_str()) != 0)
            return lastFault();
        m_kept = true;
        return {};
    }

    void keep() override { m_kept = true; }

private:
    Descriptor m_descriptor;
    boost::filesystem::path m_path;
    bool m_kept = false;
};

class LinuxAppendedFile final : public AppendedFile {
public:
    explicit LinuxAppendedFile(Descriptor descriptor) : m_descriptor(std::move(descriptor)) {}

    std::size_t append(std::string_view bytes) override { return writeAll(m_descriptor.get(), bytes); }

private:
    Descriptor m_descriptor;
};

}  // namespace

boost::filesystem::path pathFromUtf8(const std::string& text) {
    return boost::filesystem::path(text);
}

std::string pathToUtf8(const boost::filesystem::path& path) {
    return path.string();
}

std::unique_ptr<PositionedFile> PositionedFile::open(const boost::filesystem::path& path) {
    // NONBLOCK: the opening of a pipe would wait for its writer. NOCTTY: no terminal becomes the one of this process.
    Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor.get() < 0 || !isRegular(descriptor.get()))
        return nullptr;
    return std::make_unique<LinuxPositionedFile>(std::move(descriptor));
}

bool FileStamp::isAtRest() const {
    // Some file systems count the time of a write in steps of two seconds.
    constexpr std::chrono::nanoseconds longestStep = std::chrono::seconds(2);
    // Twice the step, so that a write right after the stamp falls into another one for certain.
    const std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    return now.count() - std::max(modified, changed) > 2 * longestStep.count();
}

std::optional<FileStamp> stampOf(const boost::filesystem::path& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return {};
    const auto nanoseconds = [](const timespec& time) {
        return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    };
    return FileStamp{.device = status.st_dev,
                     .number = status.st_ino,
                     .size = status.st_size,
                     .modified = nanoseconds(status.st_mtim),
                     .changed = nanoseconds(status.st_ctim)};
}

bool hasDependableStamps(const boost::filesystem::path& file) {
    struct statfs status {};
    if (::statfs(file.c_str(), &status) != 0)
        return false;
    constexpr std::uint32_t zfs = 0x2FC12FC1;  // is in no header
    // Local systems, which count every write into the times at once; a network system may learn of it later.
    const std::uint32_t localSystems[] = {EXT4_SUPER_MAGIC,
                                          XFS_SUPER_MAGIC,
                                          BTRFS_SUPER_MAGIC,
                                          F2FS_SUPER_MAGIC,
                                          TMPFS_MAGIC,
                                          OVERLAYFS_SUPER_MAGIC,
                                          zfs};
    return std::find(std::begin(localSystems), std::end(localSystems), static_cast<std::uint32_t>(status.f_type)) !=
           std::end(localSystems);
}

std::unique_ptr<PrivateFile> PrivateFile::create(const boost::filesystem::path& model,
                                                 boost::system::error_code& fault) {
    // A cleaner may take the file for abandoned before the lock is held; another name is tried then.
    for (int attempt = 0; attempt < 16; ++attempt) {
        const auto path = model.parent_path() / boost::filesystem::unique_path(model.filename());
        Descriptor descriptor(
            ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_APPEND, 0666));
        if (descriptor.get() < 0) {
            fault = lastFault();
            return nullptr;
        }
        // Some network file systems know no locks: there nobody holds one, and nobody removes what is left over.
        const bool isTaken = ::flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        fault = isTaken ? lastFault() : boost::system::error_code();
        if (!isTaken && isStillNamed(descriptor.get(), path.c_str()))
            return std::make_unique<LinuxPrivateFile>(std::move(descriptor), path);
        ::unlink(path.c_str());
    }
    return nullptr;
}

bool removeAbandonedPrivateFile(const boost::filesystem::path& path) {
    const Descriptor descriptor(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor.get() < 0 || !isRegular(descriptor.get()) || ::flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0)
        return false;
    // The lock says that no holder lives; the name may have gone to a file that somebody made since.
    return isStillNamed(descriptor.get(), path.c_str()) && ::unlink(path.c_str()) == 0;
}

std::unique_ptr<AppendedFile> AppendedFile::open(const boost::filesystem::path& path,
                                                 boost::system::error_code& fault) {
    Descriptor descriptor(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
    if (descriptor.get() < 0) {
        fault = lastFault();
        return nullptr;
    }
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0 || !(S_ISREG(status.st_mode) || S_ISCHR(status.st_mode))) {
        fault = boost::system::errc::make_error_code(boost::system::errc::not_supported);
        return nullptr;
    }
    // Only the opening must not wait; writes may.
    ::fcntl(descriptor.get(), F_SETFL, O_APPEND);
    fault.clear();
    return std::make_unique<LinuxAppendedFile>(std::move(descriptor));
}

std::FILE* divertStandardOutput() {
    std::fflush(stdout);
    // From 3 on: a closed standard stream would otherwise lend its number to the copy.
    Descriptor former(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
    if (former.get() < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return nullptr;
    std::FILE* stream = ::fdopen(former.get(), "w");
    if (stream != nullptr)
        former.release();
    return stream;
}

void reportBrokenPipesAsErrors() {
    // For the whole process, which is why only a program may call it and a library never does.
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kvan::sys
