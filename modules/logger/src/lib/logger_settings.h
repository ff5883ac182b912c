#pragma once

#include "async_sink.h"

#include <logger/logger.h>

#include <iosfwd>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvan::logging::impl {

/// What a configuration document says: the sinks, which it owns together with the loggers, and who writes to them.
class LoggerSettings {
public:
    class Impl;

    /// Reads a document; `name` stands for it in the reason of a failure. Throws an exception of the property tree for
    /// what is no XML, `std::runtime_error` for a broken rule, and what the sinks throw; then nothing is left over.
    static LoggerSettings parse(const std::string& document, const std::string& name);

    LoggerSettings() = default;
    LoggerSettings(LoggerSettings&&) = default;
    LoggerSettings& operator=(LoggerSettings&&) = default;
    ~LoggerSettings();

    /// The level and the sinks of a logger: those of the `<logger>` with the longest name that rules it, and what that
    /// leaves open from the next one that does, at last from `<root>`.
    Level::type levelOf(std::string_view loggerName) const;
    std::vector<SinkEntry> sinksOf(std::string_view loggerName) const;

    /// Hands on what the asynchronous sinks hold and ends their workers.
    void stopSinks() noexcept;

    /// Around a fork of the process: no other thread is inside a sink while it is copied.
    void beforeFork();
    void afterForkInParent();
    void afterForkInChild();

private:
    struct Rule {
        std::optional<Level::type> level;
        std::optional<std::vector<SinkEntry>> sinks;
    };

    template <class Part>
    const Part& ruling(std::string_view loggerName, std::optional<Part> Rule::*part) const;

    Rule m_root;
    std::map<std::string, Rule, std::less<>> m_loggers;
    std::vector<std::shared_ptr<ISink>> m_sinks;           // in the order of the document
    std::vector<std::shared_ptr<AsyncSink>> m_asyncSinks;  // those of them, likewise
    std::vector<std::mutex*> m_sinkMutexes;                // of all others, each once
};

}  // namespace kvan::logging::impl
