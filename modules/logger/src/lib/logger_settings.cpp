#include "logger_settings.h"

#include <algorithm>
#include <cassert>

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
    // One may stand before another, which stands earlier in the document.
    std::for_each(m_asyncSinks.rbegin(), m_asyncSinks.rend(), [](const auto& sink) { sink->stop(); });
}

void LoggerSettings::beforeFork() {
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
