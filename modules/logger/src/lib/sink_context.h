#pragma once

#include "isink.h"

#include <logger/logger.h>

#include <boost/property_tree/ptree_fwd.hpp>
#include <memory>
#include <mutex>
#include <string>

namespace kvan::logging::impl {

/// What the factory of a sink is given.
class SinkContext {
public:
    virtual ~SinkContext() = default;

    /// The `<sink>` element.
    virtual const boost::property_tree::ptree& tree() const = 0;

    /// The sink of that name, made before this one; no object for a null sink. Throws `std::runtime_error`
    /// "Unknown <sink> reference '...'".
    virtual SinkEntry get_sink_info(const std::string& name) const = 0;

    /// The lock that all sinks of the process's standard streams share.
    virtual std::shared_ptr<std::mutex> streamMutex() const = 0;
};

}  // namespace kvan::logging::impl
