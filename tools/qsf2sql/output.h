#pragma once

#include <cstdio>
#include <exception>
#include <memory>
#include <string_view>

namespace qsf2sql_tool {

/// Whoever read the output has gone, having seen enough.
class OutputClosed : public std::exception {};

/// The data that the program was asked for, on their way to the standard output. A write that fails throws
/// `OutputClosed` for a broken pipe and `std::runtime_error` for anything else.
class Output {
public:
    /// Takes over `stream`, which is not null.
    explicit Output(std::FILE* stream) : m_stream(stream) {}

    void write(std::string_view text);

    /// Writes what is still held back and closes the stream.
    void finish();

private:
    struct Close {
        void operator()(std::FILE* stream) const { std::fclose(stream); }
    };

    std::unique_ptr<std::FILE, Close> m_stream;
};

}  // namespace qsf2sql_tool
