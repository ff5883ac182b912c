#pragma once

#include <exception>
#include <string>

namespace kvan::io::c {

/// Logs the fault with its full diagnostic text at DEBUG and keeps its plain text for this thread. Never throws. Gives
/// 0, the result of every exported function that has failed.
int rememberFailure(const std::exception& fault) noexcept;

/// Keeps a text as the last error of this thread.
void setLastError(const std::string& text);

/// Text of the last failure on this thread, "<no error>" if there was none. Stays when calls succeed later.
const char* lastErrorText();

}  // namespace kvan::io::c
