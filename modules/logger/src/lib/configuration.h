#pragma once

#include "logger_settings.h"

namespace kvan::logging::impl {

/// The settings of this process: from the text or the file that the host program names, else from `kvan-logconf.xml`
/// beside the executable, else the default, console at INFO. What cannot be used is said on standard error and leads to
/// the default.
LoggerSettings loadSettings() noexcept;

}  // namespace kvan::logging::impl
