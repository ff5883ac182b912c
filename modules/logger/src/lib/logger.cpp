#include "diagnostic.h"
#include "isink.h"
#include "line_format.h"
#include "registry.h"

#include <logger/logger.h>

#include <boost/throw_exception.hpp>
#include <locale>
#include <stdexcept>

namespace kvan::logging {

Logger Logger::getLogger(const char* name) {
    if (name == nullptr)
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid logger name: <NULL>"));
    return impl::LoggerMapWrapper::instance().logger(name);
}

void Logger::write(Level::type level, std::string_view text) const {
    if (!isEnabled(level))
        return;
    std::string line;
    for (const impl::SinkEntry& entry : m_impl->sinks) {
        if (entry.threshold > level)
            continue;
        if (line.empty())
            line = impl::formatLine(m_impl->name, level, text);
        entry.sink->write(line);
    }
}

void Logger::throwInvalidLevel(Level::type level) {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("Invalid logging level (ordinal value: " + std::to_string(unsigned{level}) + ")"));
}

std::ostream& LogLine::stream() {
    if (!m_text) {
        m_text.emplace();
        m_text->imbue(std::locale::classic());
    }
    return *m_text;
}

void LogLine::finish() noexcept {
    try {
        m_logger.write(m_level, m_text ? m_text->view() : std::string_view());
    } catch (...) {
        reportFault();
    }
}

void LogLine::reportFault() noexcept {
    KVAN_DIAGNOSE(Error, "Unknown exception during logger IO streaming");
}

}  // namespace kvan::logging
