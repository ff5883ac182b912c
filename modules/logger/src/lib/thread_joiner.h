#pragma once

#include <thread>
#include <utility>

namespace kvan::logging::impl {

/// Waits for its thread when it goes.
class thread_joiner {
public:
    explicit thread_joiner(std::thread thread) : m_thread(std::move(thread)) {}
    thread_joiner(const thread_joiner&) = delete;
    thread_joiner& operator=(const thread_joiner&) = delete;
    ~thread_joiner() {
        if (m_thread.joinable())
            m_thread.join();
    }

    /// Throws `std::system_error` if the thread cannot be waited for.
    void join() { m_thread.join(); }

private:
    std::thread m_thread;
};

}  // namespace kvan::logging::impl
