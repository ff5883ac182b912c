#pragma once

#include <sysutils/boost_fwd.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The platform seam: what this system asks of an operating system beyond what C++ and Boost give. Here what concerns
/// files; `process.h`, `environment.h` and `loaded_module.h` hold the rest. The sources that are named after a platform
/// implement all of it; nothing else in the project tests for a platform.
namespace kvan::sys {

/// A path from UTF-8 text, and back. The text must be valid UTF-8.
boost::filesystem::path pathFromUtf8(const std::string& text);
std::string pathToUtf8(const boost::filesystem::path& path);

/// A regular file open for reading by position. Shares the file with readers and writers. Holds no position of its own,
/// so several threads may read at once.
class PositionedFile {
public:
    /// Opens `path`; a pipe, socket, device or directory is refused without waiting for it. Null if there is no regular
    /// file that may be read.
    static std::unique_ptr<PositionedFile> open(const boost::filesystem::path& path);

    virtual ~PositionedFile() = default;

    /// Reads up to `count` bytes at `offset`; gives the number read, less than `count` only at the end of the file, or
    /// -1 when the system reports a fault.
    virtual std::int64_t readAt(void* destination, std::int64_t count, std::uint64_t offset) = 0;

    /// Size in bytes at this moment, 0 when the system does not say.
    virtual std::uint64_t size() const = 0;
};

/// What a system notes of every write to a file before its bytes.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds of the system's clock
    std::int64_t changed = 0;   ///< the same, of any change to the file or its status

    friend bool operator==(const FileStamp&, const FileStamp&) = default;

    /// Whether the times lie far enough in the past to tell a next write from the last one.
    bool isAtRest() const;
};

/// Nothing if there is no such file.
std::optional<FileStamp> stampOf(const boost::filesystem::path& file);

/// Whether two equal stamps of the file, of which the first was at rest, say that nobody wrote to it between them. Not
/// on a file system that other computers write to as well.
bool hasDependableStamps(const boost::filesystem::path& file);

/// A file that its creator owns alone: made under a name that did not exist, never through a link, and locked against
/// every other holder until the object goes. Removed on destruction unless it was kept or moved before.
class PrivateFile {
public:
    /// Makes the file under the name `model`, in whose last part each '%' becomes a random hexadecimal digit. Null, and
    /// the system's reason in `fault`, if the file cannot be made.
    static std::unique_ptr<PrivateFile> create(const boost::filesystem::path& model, boost::system::error_code& fault);

    virtual ~PrivateFile() = default;

    virtual const boost::filesystem::path& path() const = 0;

    /// Writes at the end of the file; false if not every byte was taken.
    virtual bool append(const std::string& bytes) = 0;

    /// Cuts the file to nothing; false when the system refuses.
    virtual bool clear() = 0;

    /// Renames the file over `target` in one step, whatever stands there but a directory. Gives the system's reason
    /// when it refuses.
    virtual boost::system::error_code moveTo(const boost::filesystem::path& target) = 0;

    /// Leaves the file where it is.
    virtual void keep() = 0;
};

/// Removes the file at `path` if it is a regular file that no `PrivateFile` of any process holds. False if it stays.
bool removeAbandonedPrivateFile(const boost::filesystem::path& path);

/// A file that grows at its end, whoever else writes to it. One thread at a time.
class AppendedFile {
public:
    /// Opens `path`, made if it is missing. Null, and the system's reason in `fault`, if it cannot be written or is
    /// neither a regular file nor a device: a pipe could stop the writer for ever.
    static std::unique_ptr<AppendedFile> open(const boost::filesystem::path& path, boost::system::error_code& fault);

    virtual ~AppendedFile() = default;

    /// Hands `bytes` to the system at once, in one piece if it takes them so; gives how many it took.
    virtual std::size_t append(std::string_view bytes) = 0;
};

/// Sends everything that this process writes to its standard output to its standard error instead, and gives a stream
/// on the former standard output, which the caller closes with `std::fclose`. Null when the system refuses.
std::FILE* divertStandardOutput();

/// From now on a reader that goes away makes writes fail with an error instead of ending the process.
void reportBrokenPipesAsErrors();

}  // namespace kvan::sys
