#include "registry.h"

#include "configuration.h"
#include "line_format.h"
#include "self_holder.h"

#include <sysutils/process.h>

#include <atomic>
#include <boost/regex.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// One registry serves all modules of the process that carry this library. Each module has storage for one, the first to
// log offers its own through the slot that all of them share, and the others find it there; a module of another layout
// keeps to itself. The object has no destructor that runs: threads may log until the process is gone.
// Around a fork every lock of the logging is held in one order (time zone, registry, sinks), so that the child finds
// none of them taken by a thread that it does not have.
namespace kvan::logging::impl {

namespace {

constexpr unsigned g_off = Level::FATAL + 1;

/// Storage without an end.
union Immortal {
    constexpr Immortal() : registry() {}
    ~Immortal() {}
    LoggerMapWrapper registry;
};

constinit Immortal g_own;
constinit std::atomic<LoggerMapWrapper*> g_used{nullptr};

/// Set while the configuration is read: the host's functions may come back to this library.
thread_local bool t_isConfiguring = false;

void beforeFork() {
    lockTimeZone();
    g_own.registry.beforeFork();
}

void afterForkInParent() {
    g_own.registry.afterForkInParent();
    unlockTimeZone();
}

void afterForkInChild() {
    g_own.registry.afterForkInChild();
    unlockTimeZone();
}

/// The time for which this module is loaded.
struct Membership {
    Membership() { sys::onFork(&beforeFork, &afterForkInParent, &afterForkInChild); }
    Membership(const Membership&) = delete;
    Membership& operator=(const Membership&) = delete;
    ~Membership() {
        if (LoggerMapWrapper* registry = g_used.load(std::memory_order_acquire))
            registry->leave();
    }
};

const Membership g_membership;

bool isValidName(const char* name) {
    static const boost::regex pattern("[A-Za-z][A-Za-z0-9_\\-]*(\\.[A-Za-z][A-Za-z0-9_\\-]*)*");
    return boost::regex_match(name, pattern);
}

}  // namespace

LoggerMapWrapper& LoggerMapWrapper::instance() {
    LoggerMapWrapper* used = g_used.load(std::memory_order_acquire);
    if (used != nullptr)
        return *used;

    std::atomic<void*>& slot = sys::processWideSlot();
    void* found = slot.load();
    std::optional<sys::LoadedModule> module;
    if (found == nullptr) {
        // Before the object is offered: once somebody else uses it, its code must not be unloaded.
        module = aquire_handle();
        if (slot.compare_exchange_strong(found, &g_own.registry))
            found = &g_own.registry;
    }
    auto* registry = static_cast<LoggerMapWrapper*>(found);
    if (!registry->isCompatible())
        registry = &g_own.registry;
    if (g_used.compare_exchange_strong(used, registry))
        registry->enter(module);
    return *registry;
}

Logger LoggerMapWrapper::logger(const char* name) {
    if (t_isConfiguring)
        return Logger(disabled(name));
    // Only the lookup of a logger takes this lock; a line that is written never does.
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!m_content && !m_isEnded) {
        t_isConfiguring = true;
        m_content.emplace(Content{loadSettings(), {}});
        t_isConfiguring = false;
    }
    if (m_content) {
        const auto found = m_content->loggers.find(std::string_view(name));
        if (found != m_content->loggers.end())
            return Logger(found->second);
    }
    // After the lookup: a name that was found was valid, and the pattern costs more than the search.
    if (!isValidName(name))
        BOOST_THROW_EXCEPTION(std::runtime_error("Invalid logger name: \"" + std::string(name) + "\""));
    if (m_isEnded)
        return Logger(disabled(name));
    return Logger(m_content->loggers.emplace(name, configured(name)).first->second);
}

std::shared_ptr<Logger::Impl> LoggerMapWrapper::disabled(const char* name) {
    return std::make_shared<Logger::Impl>(name, g_off, std::vector<SinkEntry>());
}

std::shared_ptr<Logger::Impl> LoggerMapWrapper::configured(const char* name) const {
    const LoggerSettings& settings = m_content->settings;
    return std::make_shared<Logger::Impl>(name, settings.levelOf(name), settings.sinksOf(name));
}

void LoggerMapWrapper::enter(std::optional<sys::LoadedModule> module) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!m_module)
        m_module = module;
    ++m_modules;
}

void LoggerMapWrapper::leave() noexcept {
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        // A forked child may miss the entry that another thread was about to make.
        if (m_modules > 1) {
            --m_modules;
            return;
        }
        m_isEnded = true;
        if (m_content) {
            for (const auto& [name, logger] : m_content->loggers)
                logger->threshold.store(g_off, std::memory_order_relaxed);
        }
    }
    end();
}

void LoggerMapWrapper::end() noexcept {
    // Without the lock: queues take their time to drain, and loggers may be asked for meanwhile.
    if (m_content)
        m_content->settings.stopSinks();
    release_handle(m_module);
}

void LoggerMapWrapper::beforeFork() {
    m_mutex.lock();
    // No configuration yet means no sink, and so no lock of one.
    if (m_content)
        m_content->settings.beforeFork();
}

void LoggerMapWrapper::afterForkInParent() {
    if (m_content)
        m_content->settings.afterForkInParent();
    m_mutex.unlock();
}

void LoggerMapWrapper::afterForkInChild() {
    if (m_content)
        m_content->settings.afterForkInChild();
    m_mutex.unlock();
}

}  // namespace kvan::logging::impl
