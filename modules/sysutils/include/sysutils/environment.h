#pragma once

#include <sysutils/boost_fwd.h>

/// Where this process and its user live. All of it may be asked from any thread, at the cost of a system call or two.
namespace kvan::sys {

/// Full path of the running executable. Throws `std::runtime_error` "Executable path could not be determined".
boost::filesystem::path executablePath();

/// The user's home directory: `HOME`, else the entry of the user database. Throws `std::runtime_error`
/// "User home directory could not be determined".
boost::filesystem::path userHome();

/// The user's directory for the data of applications: `XDG_DATA_HOME`, else `.local/share` of the home directory.
/// Throws `std::runtime_error` "User data home directory could not be determined".
boost::filesystem::path userDataHome();

}  // namespace kvan::sys
