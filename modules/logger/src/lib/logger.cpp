#include "logger/logger.h"

#include "sysutils/posix_time.h"

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/regex.hpp>
#include <boost/thread/thread.hpp>
#include <boost/throw_exception.hpp>
#include <cstdio>
#include <map>
#include <mutex>
#include <stdexcept>

namespace kvan::logging {

namespace {

constexpr const char* g_levelNames[] = {"TRACE", "DEBUG", "INFO ", "WARN ", "ERROR", "FATAL"};

bool isValidName(const std::string& name) {
    static const boost::regex pattern("[A-Za-z][A-Za-z0-9_\\-]*(\\.[A-Za-z][A-Za-z0-9_\\-]*)*");
    return boost::regex_match(name, pattern);
}

std::string formatLine(const std::string& name, Level::type level, const std::string& text) {
    const auto now = boost::posix_time::microsec_clock::local_time();
    std::ostringstream line;
    line << sys::posix::toIsoExtendedString(now, sys::posix::FormatOption::BlankMicroseconds) << " [tid=0x"
         << boost::this_thread::get_id() << "] [" << g_levelNames[level] << "] " << name << ": " << text << '\n';
    return line.str();
}

}  // namespace

struct Logger::Registry {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<const Impl>> loggers;

    /// Never destroyed: loggers are used until the last static object is gone.
    static Registry& instance() {
        static Registry* const registry = new Registry;
        return *registry;
    }
};

Logger Logger::getLogger(const char* name) {
    if (name == nullptr)
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid logger name: <NULL>"));
    Registry& registry = Registry::instance();
    const std::lock_guard<std::mutex> guard(registry.mutex);
    const auto found = registry.loggers.find(name);
    if (found != registry.loggers.end())
        return Logger(found->second);
    if (!isValidName(name))
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid logger name: \"" + std::string(name) + "\""));
    auto impl = std::make_shared<const Impl>(Impl{name, Level::INFO});
    registry.loggers.emplace(name, impl);
    return Logger(std::move(impl));
}

void Logger::write(Level::type level, const std::string& text) const {
    if (!isEnabled(level))
        return;
    const std::string line = formatLine(m_impl->name, level, text);
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

void Logger::throwInvalidLevel(Level::type level) {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("Invalid logging level (ordinal value: " + std::to_string(static_cast<int>(level)) + ")"));
}

LogLine::~LogLine() {
    try {
        m_logger.write(m_level, m_text.str());
    } catch (...) {
        std::fputs("Unknown exception during logger IO streaming\n", stderr);
    }
}

}  // namespace kvan::logging
