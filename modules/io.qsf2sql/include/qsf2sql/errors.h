#pragma once

#include <stdexcept>

namespace kvan::io {

/// A native file that is damaged or not of this format.
class Qsf2SqlFileFormatError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A cache that cannot be made, read or understood.
class Qsf2SqlCacheError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A file that is missing, may not be read or is no regular file.
class Qsf2SqlCannotOpenFileError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A main file that does not exist or is no regular file.
class Qsf2SqlFileNotFoundError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace kvan::io
