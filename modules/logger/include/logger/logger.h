#pragma once

#include <memory>
#include <sstream>
#include <string>

namespace kvan::logging {

namespace Level {
enum type { TRACE = 0, DEBUG = 1, INFO = 2, WARN = 3, ERROR = 4, FATAL = 5 };
}

/// A named logger: a cheap value that shares its state with every logger of that name in the process. All operations
/// may be called from any thread.
class Logger {
public:
    /// The logger of that name, made at the first request. A name is dotted parts, each a letter followed by letters,
    /// digits, underscores or hyphens. Throws `std::runtime_error` "Invalid logger name: ..." for anything else.
    static Logger getLogger(const char* name);

    /// Whether a line of that level would be written. Throws `std::runtime_error` for an ordinal above `Level::FATAL`.
    bool isEnabled(Level::type level) const {
        if (level > Level::FATAL) [[unlikely]]
            throwInvalidLevel(level);
        return m_impl->threshold <= level;
    }

    /// Writes one line, if the level is enabled. Never changes the caller's flow by a fault of a sink.
    void write(Level::type level, const std::string& text) const;

private:
    struct Impl {
        std::string name;
        Level::type threshold;
    };
    struct Registry;

    explicit Logger(std::shared_ptr<const Impl> impl) : m_impl(std::move(impl)) {}
    [[noreturn]] static void throwInvalidLevel(Level::type level);

    std::shared_ptr<const Impl> m_impl;
};

/// One line under construction. Collects what is streamed into it and writes it to the logger when it goes.
class LogLine {
public:
    LogLine(const Logger& logger, Level::type level) : m_logger(logger), m_level(level) {}
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;
    ~LogLine();

    template <class T>
    LogLine& operator<<(const T& value) {
        m_text << value;
        return *this;
    }

private:
    const Logger& m_logger;
    Level::type m_level;
    std::ostringstream m_text;
};

}  // namespace kvan::logging

/// KVAN_LOG(logger, DEBUG) << "text " << value;  Nothing behind it is evaluated when the level is off.
/// A loop of at most one turn instead of an `if`, so that no `else` of the caller can be taken for ours.
#define KVAN_LOG(logger, level)                                                                   \
    for (bool kvanLogEnabled = (logger).isEnabled(::kvan::logging::Level::level); kvanLogEnabled; \
         kvanLogEnabled = false)                                                                  \
    ::kvan::logging::LogLine((logger), ::kvan::logging::Level::level)
