#pragma once

#include "sink_context.h"

#include <functional>
#include <map>

namespace kvan::logging::impl {

/// Makes a sink of one class; no object for the null sink. Throws for what the element gets wrong.
using SinkFactory = std::function<std::shared_ptr<ISink>(const SinkContext&)>;

/// By the `class` attribute of the `<sink>` element.
const std::map<std::string, SinkFactory>& sinkFactories();

}  // namespace kvan::logging::impl
