#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvan::logging {

namespace Level {
enum type : unsigned { TRACE = 0, DEBUG = 1, INFO = 2, WARN = 3, ERROR = 4, FATAL = 5 };
}

namespace impl {
class ISink;
class LoggerMapWrapper;

/// One way out of a logger: a sink, and the least level that goes there.
struct SinkEntry {
    std::shared_ptr<ISink> sink;
    Level::type threshold;
};
}  // namespace impl

/// A named logger: a cheap value that shares its state with every logger of that name in the process. All operations
/// may be called from any thread, and until the very end of the process: after the end of the logging every level is
/// off.
class Logger {
public:
    /// The logger of that name, made at the first request. A name is dotted parts, each a letter followed by letters,
    /// digits, underscores or hyphens. Throws `std::runtime_error` "Invalid logger name: ..." for anything else.
    /// The first request in the process reads the configuration (docs/logging.md) and never fails because of it.
    static Logger getLogger(const char* name);

    /// Whether a line of that level would be written. Throws `std::runtime_error` for an ordinal above `Level::FATAL`.
    bool isEnabled(Level::type level) const {
        if (level > Level::FATAL) [[unlikely]]
            throwInvalidLevel(level);
        return m_impl->threshold.load(std::memory_order_relaxed) <= level;
    }

    /// Writes one line, if the level is enabled, to every sink of this logger whose own threshold lets it through. Line
    /// ends after the text are dropped. Throws as `isEnabled` does; a fault of a sink never changes the caller's flow.
    void write(Level::type level, std::string_view text) const;

private:
    friend class impl::LoggerMapWrapper;

    struct Impl {
        Impl(const char* loggerName, unsigned leastLevel, std::vector<impl::SinkEntry> entries)
            : name(loggerName), threshold(leastLevel), sinks(std::move(entries)) {}

        const std::string name;
        std::atomic<unsigned> threshold;  // a `Level::type`, or above `FATAL` for off
        const std::vector<impl::SinkEntry> sinks;
    };

    explicit Logger(std::shared_ptr<const Impl> impl) : m_impl(std::move(impl)) {}
    [[noreturn]] static void throwInvalidLevel(Level::type level);

    std::shared_ptr<const Impl> m_impl;
};

/// One line under construction. Collects what is streamed into it, in the form of the "C" locale, and writes it to the
/// logger when it goes. No exception of the streaming or the writing gets out.
class LogLine {
public:
    LogLine(const Logger& logger, Level::type level)
        : m_logger(logger), m_level(level), m_isEnabled(logger.isEnabled(level)) {}
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;
    ~LogLine() {
        if (m_isEnabled)
            finish();
    }

    template <class T>
    LogLine& operator<<(const T& value) {
        if (m_isEnabled) {
            try {
                stream() << value;
            } catch (...) {
                reportFault();
            }
        }
        return *this;
    }

private:
    std::ostream& stream();
    void finish() noexcept;
    static void reportFault() noexcept;

    const Logger& m_logger;
    Level::type m_level;
    bool m_isEnabled;
    std::optional<std::ostringstream> m_text;
};

}  // namespace kvan::logging

/// KVAN_LOG(logger, DEBUG) << "text " << value;  Nothing after it is evaluated when the level is off.
/// A loop of at most one turn instead of an `if`, so that no `else` of the caller can be taken for ours.
#define KVAN_LOG(logger, level)                                                                   \
    for (bool kvanLogEnabled = (logger).isEnabled(::kvan::logging::Level::level); kvanLogEnabled; \
         kvanLogEnabled = false)                                                                  \
    ::kvan::logging::LogLine((logger), ::kvan::logging::Level::level)
