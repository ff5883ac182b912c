#include "logger_settings.h"

#include <algorithm>
#include <cassert>

// What a logger gets is looked up once, when it is made. A rule holds for its own name and for the dotted names below
// it; level and sinks are looked up apart, so that a rule with a level alone keeps the sinks of the next rule up. The
// root has both, which the parser has seen to, so that the search always ends.
namespace kvan::logging::impl {

LoggerSettings::~LoggerSettings() {
    stopSinks();
}

template <class Part>
const Part& LoggerSettings::ruling(std::string_view loggerName, std::optional<Part> Rule::*part) const {
    while (!loggerName.empty()) {
        const auto found = m_loggers.find(loggerName);
        if (found != m_loggers.end() && found->second.*part)
            return *(found->second.*part);
        const std::size_t dot = loggerName.rfind('.');
        loggerName = loggerName.substr(0, dot == std::string_view::npos ? 0 : dot);
    }
    return (m_root.*part).value();
}

Level::type LoggerSettings::levelOf(std::string_view loggerName) const {
    return ruling(loggerName, &Rule::level);
}

std::vector<SinkEntry> LoggerSettings::sinksOf(std::string_view loggerName) const {
    return ruling(loggerName, &Rule::sinks);
}

void LoggerSettings::stopSinks() noexcept {
    // An asynchronous sink may write to another one, which stands earlier in the document and so ends later.
    std::for_each(m_asyncSinks.rbegin(), m_asyncSinks.rend(), [](const auto& sink) { sink->stop(); });
}

void LoggerSettings::beforeFork() {
    // Queues before locks of sinks: a worker holds its queue's lock for a moment only and never waits for it inside a
    // sink.
    for (const auto& sink : m_asyncSinks)
        sink->beforeFork();
    for (std::mutex* mutex : m_sinkMutexes)
        mutex->lock();
}

void LoggerSettings::afterForkInParent() {
    for (std::mutex* mutex : m_sinkMutexes)
        mutex->unlock();
    for (const auto& sink : m_asyncSinks)
        sink->afterForkInParent();
}

void LoggerSettings::afterForkInChild() {
    for (std::mutex* mutex : m_sinkMutexes)
        mutex->unlock();
    for (const auto& sink : m_asyncSinks)
        sink->afterForkInChild();
}

}  // namespace kvan::logging::impl
