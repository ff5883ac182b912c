#pragma once

#include "isink.h"
#include "sink_context.h"
#include "thread_joiner.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kvan::logging::impl {

/// Takes lines into a queue without limit and lets a thread of its own hand them, in their order, to its sinks. The
/// thresholds of those do not apply.
class AsyncSink final : public ISink {
public:
    /// Starts the worker. Throws `std::runtime_error` for a reference to itself, to nothing known, or for none at all.
    explicit AsyncSink(const SinkContext& context);
    ~AsyncSink() override { stop(); }

    void write(const std::string& formattedLine) override;

    /// Returns when every line that was taken has been handed on and the worker has ended. Lines that come later are
    /// dropped.
    void stop() noexcept;

    /// Around a fork: the lock is held while the process is copied. The child begins with an empty queue, since its
    /// lines are the parent's to write, and without the worker, which the first line starts anew.
    void beforeFork() { m_state.mutex.lock(); }
    void afterForkInParent() { m_state.mutex.unlock(); }
    void afterForkInChild();

private:
    /// What a fork leaves in pieces.
    struct State {
        std::mutex mutex;
        std::condition_variable wake;
        std::optional<thread_joiner> worker;
        bool isWorkerWaiting = false;
        bool isStopped = false;
    };

    void startWorker();
    void async_write();
    void handOver(const std::string& line) const noexcept;

    std::vector<std::shared_ptr<ISink>> m_sinks;
    std::deque<std::string> m_lines;  // under the mutex of the state
    State m_state;
};

}  // namespace kvan::logging::impl
