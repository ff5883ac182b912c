#include "diagnostic.h"
#include "isink.h"
#include "line_format.h"
#include "registry.h"

#include <logger/logger.h>

#include <boost/throw_exception.hpp>
#include <locale>
#include <stdexcept>

// The way of a line: the level is compared without a lock, the text is put together by its caller, formatted once for
// all sinks that take it, and handed to each in turn. The sinks of a logger are fixed when it is made, so nothing is
// locked here; each sink locks for itself. What a sink does wrong stays with the sink.
namespace kvan::logging {

Logger Logger::getLogger(const char* name) {
    if (name == nullptr)
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid logger name: <NULL>"));
    return impl::LoggerMapWrapper::instance().logger(name);
}

void Logger::write(Level::type level, std::string_view text) const {
    // Again here, since a level may have been switched off between the test of the caller and this call.
    if (!isEnabled(level))
        return;
    std::string line;
    for (const impl::SinkEntry& entry : m_impl->sinks) {
        if (entry.threshold > level)
            continue;
        // Only for a sink that takes it: a line for nobody costs no formatting.
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
        // The host's locale must not change the numbers of a log.
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
