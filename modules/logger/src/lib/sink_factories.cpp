#include "sink_factories.h"

#include "async_sink.h"
#include "rolling_file_sink.h"
#include "stream_sinks.h"

// All classes of sinks that a configuration may name. A further one is a class that takes a `SinkContext`, and a row
// here. The null sink gives no object: references to it are valid and write nowhere.
namespace kvan::logging::impl {

namespace {

template <class Sink>
std::shared_ptr<ISink> make(const SinkContext& context) {
    return std::make_shared<Sink>(context);
}

std::shared_ptr<ISink> makeNothing(const SinkContext&) {
    return nullptr;
}

}  // namespace

const std::map<std::string, SinkFactory>& sinkFactories() {
    // Made at the first use: another module may log before the objects of this one are constructed.
    static const std::map<std::string, SinkFactory> factories = {
        {"kvan.logging.NullSink", &makeNothing},
        {"kvan.logging.ConsoleSink", &make<ConsoleSink>},
        {"kvan.logging.StdOutSink", &make<StdOutSink>},
        {"kvan.logging.StdErrSink", &make<StdErrSink>},
        {"kvan.logging.DebugOutputSink", &make<DebugOutputSink>},
        {"kvan.logging.RollingFileSink", &make<RollingFileSink>},
        {"kvan.logging.AsyncSink", &make<AsyncSink>},
    };
    return factories;
}

}  // namespace kvan::logging::impl
