#pragma once

#include "isink.h"

#include <memory>
#include <mutex>

namespace kvan::logging::impl {

/// Holds the lock of a sink and the promise not to throw; a leaf only writes. Several sinks may share one lock.
class LockedSink : public ISink {
public:
    void write(const std::string& formattedLine) final;

    std::mutex& mutex() { return *m_mutex; }

protected:
    explicit LockedSink(std::shared_ptr<std::mutex> mutex) : m_mutex(std::move(mutex)) {}

    virtual void writeLocked(const std::string& formattedLine) = 0;

private:
    std::shared_ptr<std::mutex> m_mutex;
};

}  // namespace kvan::logging::impl
