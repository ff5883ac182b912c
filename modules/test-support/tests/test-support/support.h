#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <boost/algorithm/hex.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

/// What the test programs of all modules share, the headers above included.
namespace kvan::test {

inline constexpr double g_infinity = std::numeric_limits<double>::infinity();
inline constexpr double g_nan = std::numeric_limits<double>::quiet_NaN();

using Bytes = std::vector<std::uint8_t>;

/// The text of the `Failure` that `action` ends with; "" if it ends well. Any other exception goes on.
template <class Failure = std::exception, class Action>
std::string failureOf(Action&& action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

/// An empty directory, by its path; it goes with all that lies in it, even if a test took the right to write.
class TemporaryDirectory : public boost::filesystem::path {
public:
    TemporaryDirectory()
        : path(boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("test-%%%%-%%%%-%%%%")) {
        boost::filesystem::create_directory(*this);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        boost::system::error_code ignored;
        boost::filesystem::permissions(*this, boost::filesystem::owner_all, ignored);
        boost::filesystem::remove_all(*this, ignored);
    }
};

/// All bytes of a file; none if it cannot be read.
inline std::string readFile(const boost::filesystem::path& path) {
    boost::filesystem::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const boost::filesystem::path& path, std::string_view bytes) {
    boost::filesystem::ofstream(path, std::ios::binary) << bytes;
}

inline void writeFile(const boost::filesystem::path& path, const Bytes& bytes) {
    writeFile(path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

/// Bytes from hexadecimal digits; blanks set fields apart.
inline Bytes fromHex(std::string digits) {
    std::erase(digits, ' ');
    Bytes bytes;
    boost::algorithm::unhex(digits, std::back_inserter(bytes));
    return bytes;
}

/// A calibration blob written by hand: type, no further correction, doubles, the key of a reference.
inline Bytes calibrationBlob(std::uint16_t type, const std::vector<double>& constants, const Bytes& key = {}) {
    Bytes blob(4 + 8 * constants.size());
    std::memcpy(blob.data(), &type, 2);
    std::memcpy(blob.data() + 4, constants.data(), 8 * constants.size());
    blob.insert(blob.end(), key.begin(), key.end());
    return blob;
}

/// What `action` gives in a process of its own whose user owns nothing and may write only what everybody may. The saved
/// user stays root where root runs the test.
inline std::string asNobody(const std::function<std::string()>& action) {
    constexpr uid_t nobody = 65534;
    int toParent[2];
    if (::pipe(toParent) != 0)
        throw std::runtime_error("no pipe");
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isNobody = ::geteuid() != 0 || ::setresuid(nobody, nobody, 0) == 0;
        const std::string text = isNobody ? action() : "still root";
        ::_exit(::write(toParent[1], text.data(), text.size()) < 0 ? 1 : 0);
    }
    ::close(toParent[1]);
    std::array<char, 1000> text;
    const ssize_t length = ::read(toParent[0], text.data(), text.size());
    ::close(toParent[0]);
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0 ? std::string(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))) : "crashed";
}

}  // namespace kvan::test
