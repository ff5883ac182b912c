#include "output.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

// The only place that writes to the standard output. Every write is checked, and so is the close, since what a stream
// still holds fails there: a full disk must not end with status 0.

namespace qsf2sql_tool {

namespace {

[[noreturn]] void throwWriteError() {
    const int error = errno;
    if (error == EPIPE)
        throw OutputClosed();
    throw std::runtime_error("can't write the output: " + std::generic_category().message(error));
}

}  // namespace

void Output::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), m_stream.get()) != text.size())
        throwWriteError();
}

void Output::finish() {
    if (std::fclose(m_stream.release()) != 0)
        throwWriteError();
}

}  // namespace qsf2sql_tool
