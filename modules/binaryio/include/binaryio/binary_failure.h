#pragma once

#include <boost/system/system_error.hpp>
#include <string>

namespace kvan::binaryio {

/// Codes of the category "binary io stream".
enum class StreamError {
    Success = 0,
    Unspecified = 1,
    PositionOutOfBounds = 2,
    UnexpectedMagicNumber = 3,
    EmptyVersionNumber = 4,
    UnexpectedVersionNumber = 5,
    EndOfStream = 6,
    InvalidOperation = 7,
};

const boost::system::error_category& streamCategory();

/// The one failure of binary streams: a message, which may be empty, before the text of the code.
class BinaryFailure : public boost::system::system_error {
public:
    explicit BinaryFailure(StreamError code, const std::string& message = {})
        : system_error(static_cast<int>(code), streamCategory(), message) {}
};

}  // namespace kvan::binaryio
