#include "stream_sinks.h"

#include "diagnostic.h"

#include <sysutils/process.h>

// All sinks of the standard streams share one lock, so that lines of several of them do not mix on one terminal.
namespace kvan::logging::impl {

StreamSink::StreamSink(const SinkContext& context, std::FILE* stream)
    : LockedSink(context.streamMutex()), m_stream(stream), m_layout(MultiColorLayout::of(context.tree())) {}

void StreamSink::writeLocked(const std::string& formattedLine) {
    // Asked at each line: the host may send the stream elsewhere at any time.
    const bool isColored = m_layout && sys::isTerminal(m_stream);
    const std::string text = isColored ? m_layout->colored(formattedLine) : std::string();
    const std::string& shown = isColored ? text : formattedLine;
    std::fwrite(shown.data(), 1, shown.size(), m_stream);
    std::fflush(m_stream);
}

void DebugOutputSink::writeLocked(const std::string& formattedLine) {
    if (sys::isDebuggerAttached())
        writeToErrorChannel(formattedLine);
}

}  // namespace kvan::logging::impl
