#pragma once

#include "locked_sink.h"
#include "sink_context.h"

#include <sysutils/platform.h>

#include <boost/filesystem/path.hpp>
#include <cstdint>
#include <memory>
#include <optional>

namespace kvan::logging::impl {

/// Appends to a file, every line handed to the system at once, and renames the file to a numbered backup once it has
/// grown above the limit. A file that cannot be renamed goes on growing; one that cannot be reopened sends the lines to
/// standard error. Backup 3 of `app.log` is `app.3.log`.
class RollingFileSink final : public LockedSink {
public:
    /// Throws `boost::filesystem::filesystem_error` if the file cannot be opened.
    explicit RollingFileSink(const SinkContext& context);

private:
    enum class RollingType { ResetOldest, SteadyRotate };

    static RollingType rollingTypeOf(const std::string& name);
    void writeLocked(const std::string& formattedLine) override;
    bool isTooLarge() const;
    void append(const std::string& formattedLine);

    void doRollOverResetOldest();
    void doRollOverSteadyRotate();
    void removeBackup(const boost::filesystem::path& backup);
    boost::system::error_code shiftBackups();
    void reopen();
    boost::filesystem::path backupPath(std::int64_t index) const;
    std::optional<std::int64_t> backupIndex(const boost::filesystem::path& file) const;

    boost::filesystem::path m_path;
    std::unique_ptr<sys::AppendedFile> m_file;
    bool m_endsWithinLine = false;
    std::uint64_t m_maxFileSize;  // bytes; 0: never rolls
    std::int64_t m_maxBackups;
    std::int64_t m_nextBackup = 0;
    RollingType m_rollingType;
};

}  // namespace kvan::logging::impl
