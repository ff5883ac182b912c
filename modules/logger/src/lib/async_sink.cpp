#include "async_sink.h"

#include "diagnostic.h"

#include <sysutils/process.h>

#include <boost/property_tree/ptree.hpp>
#include <boost/throw_exception.hpp>
#include <memory>
#include <stdexcept>
#include <system_error>

// Callers only append to the queue, and the worker takes the whole queue at once: a slow sink never holds up a caller,
// and the mutex is never held while a sink writes. The worker has what it took, the queue what came since, so lines
// keep their order. The worker is woken only when it waits, since waking costs a system call a line. Faults of a sink
// end in a diagnostic and the next line; a fault of the queue itself (no memory) loses the line, never the caller.
namespace kvan::logging::impl {

AsyncSink::AsyncSink(const SinkContext& context) {
    const auto name = context.tree().get<std::string>("<xmlattr>.name");
    bool isReferring = false;
    for (const auto& [element, child] : context.tree()) {
        if (element != "sink")
            continue;
        const auto reference = child.get<std::string>("<xmlattr>.ref");
        if (reference == name)
            BOOST_THROW_EXCEPTION(
                std::runtime_error("Invalid self-reference within <sink> reference of sink '" + name + "'"));
        isReferring = true;
        if (auto sink = context.get_sink_info(reference).sink)
            m_sinks.push_back(std::move(sink));
    }
    if (!isReferring)
        BOOST_THROW_EXCEPTION(std::runtime_error("No <sink> reference within sink '" + name + "' element"));
    startWorker();
}

void AsyncSink::startWorker() {
    m_state.worker.emplace(sys::startQuietThread([this] { async_write(); }));
}

void AsyncSink::write(const std::string& formattedLine) {
    try {
        bool isWakeNeeded = false;
        {
            const std::lock_guard<std::mutex> guard(m_state.mutex);
            if (m_state.isStopped)
                return;
            m_lines.push_back(formattedLine);
            // Missing in a forked child only: elsewhere the constructor has started it.
            if (!m_state.worker)
                startWorker();
            isWakeNeeded = std::exchange(m_state.isWorkerWaiting, false);
        }
        if (isWakeNeeded)
            m_state.wake.notify_one();
    } catch (const std::exception& fault) {
        KVAN_DIAGNOSE(Error, fault.what());
    }
}

void AsyncSink::async_write() {
    std::deque<std::string> lines;
    for (;;) {
        {
            std::unique_lock<std::mutex> lock(m_state.mutex);
            m_state.isWorkerWaiting = true;
            m_state.wake.wait(lock, [this] { return m_state.isStopped || !m_lines.empty(); });
            m_state.isWorkerWaiting = false;
            // Stopped, and nothing left: the queue is always drained first.
            if (m_lines.empty())
                return;
            lines.swap(m_lines);
        }
        // Freed one by one, so that a long queue does not count twice.
        for (; !lines.empty(); lines.pop_front())
            handOver(lines.front());
    }
}

void AsyncSink::handOver(const std::string& line) const noexcept {
    // Each sink by itself: what one of them does wrong must not keep the line from the others.
    for (const auto& sink : m_sinks) {
        try {
            sink->write(line);
        } catch (...) {
            KVAN_DIAGNOSE(Error, "[tid=" + std::to_string(sys::threadId()) + "] Worker thread exception\n");
        }
    }
}

void AsyncSink::stop() noexcept {
    try {
        std::optional<thread_joiner>& worker = m_state.worker;
        {
            const std::lock_guard<std::mutex> guard(m_state.mutex);
            if (std::exchange(m_state.isStopped, true))
                return;
        }
        // Not under the mutex, which the worker wants next.
        m_state.wake.notify_one();
        try {
            if (worker)
                worker->join();
        } catch (const std::system_error&) {
            KVAN_DIAGNOSE(Error, "Irregular worker thread join, some logging events might got lost!\n");
        }
        const std::lock_guard<std::mutex> guard(m_state.mutex);
        if (!m_lines.empty())
            KVAN_DIAGNOSE(Error, "There are " + std::to_string(m_lines.size()) + " remaining events\n");
    } catch (...) {
        KVAN_DIAGNOSE(Error, "AsyncSink::stop: Caught exception!\n");
    }
}

void AsyncSink::afterForkInChild() {
    m_lines.clear();
    const bool isStopped = m_state.isStopped;
    // The condition still counts the lost worker as a waiter, and the thread can be neither joined nor detached: the
    // state is not destroyed but made anew in its place.
    std::construct_at(&m_state);
    m_state.isStopped = isStopped;
}

}  // namespace kvan::logging::impl
