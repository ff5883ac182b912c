#pragma once

#include "locked_sink.h"
#include "multi_color_layout.h"
#include "sink_context.h"

#include <cstdio>
#include <optional>

namespace kvan::logging::impl {

/// Writes to one of the process's standard streams, a flush each line. With a layout, and while the stream is a
/// terminal, each line has the colours of its level.
class StreamSink : public LockedSink {
protected:
    StreamSink(const SinkContext& context, std::FILE* stream);

    void writeLocked(const std::string& formattedLine) final;

private:
    std::FILE* m_stream;
    std::optional<MultiColorLayout> m_layout;
};

/// The console of this platform is standard output.
class ConsoleSink final : public StreamSink {
public:
    explicit ConsoleSink(const SinkContext& context) : StreamSink(context, stdout) {}
};

class StdOutSink final : public StreamSink {
public:
    explicit StdOutSink(const SinkContext& context) : StreamSink(context, stdout) {}
};

class StdErrSink final : public StreamSink {
public:
    explicit StdErrSink(const SinkContext& context) : StreamSink(context, stderr) {}
};

/// Writes where a debugger shows it: to standard error while a debugger is attached, else nowhere.
class DebugOutputSink final : public LockedSink {
public:
    explicit DebugOutputSink(const SinkContext& context) : LockedSink(context.streamMutex()) {}

private:
    void writeLocked(const std::string& formattedLine) override;
};

}  // namespace kvan::logging::impl
