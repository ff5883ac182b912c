#pragma once

#include "logger_settings.h"

#include <logger/logger.h>
#include <sysutils/loaded_module.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace kvan::logging::impl {

/// The loggers of the process and what is configured for them. One object serves every module of the process that is
/// linked with this library; the first module to log brings it, and stays loaded. It is never destroyed, since threads
/// may go on asking it until the process is gone, but it ends with the last module: the queues are drained, the workers
/// joined, and from then on every level of every logger is off.
class LoggerMapWrapper {
public:
    constexpr LoggerMapWrapper() = default;
    LoggerMapWrapper(const LoggerMapWrapper&) = delete;
    LoggerMapWrapper& operator=(const LoggerMapWrapper&) = delete;

    /// The one of this process.
    static LoggerMapWrapper& instance();

    /// See `Logger::getLogger`; `name` is not null.
    Logger logger(const char* name);

    /// Whether the modules that share the object agree on its layout.
    bool isCompatible() const { return m_layout == g_layout; }

    void enter(std::optional<sys::LoadedModule> module);
    void leave() noexcept;

    void beforeFork();
    void afterForkInParent();
    void afterForkInChild();

private:
    struct Content {
        LoggerSettings settings;
        std::map<std::string, std::shared_ptr<Logger::Impl>, std::less<>> loggers;
    };

    static std::shared_ptr<Logger::Impl> disabled(const char* name);
    std::shared_ptr<Logger::Impl> configured(const char* name) const;
    void end() noexcept;

    /// Counts up with every change of the layout or the meaning of this class, of `Logger::Impl` or of `ISink`.
    static constexpr std::uint64_t g_layout = 1;

    const std::uint64_t m_layout = g_layout;
    std::mutex m_mutex;
    std::optional<Content> m_content;
    std::optional<sys::LoadedModule> m_module;
    unsigned m_modules = 0;
    bool m_isEnded = false;
};

}  // namespace kvan::logging::impl
