#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <thread>

/// The platform seam for what concerns the running process and its threads.
namespace kvan::sys {

std::uint64_t processId();

/// The system's own id of the calling thread, as a debugger shows it.
std::uint64_t threadId();

/// Whether somebody looks at what is written to `stream`, at this moment.
bool isTerminal(std::FILE* stream);

/// Whether a debugger holds this process, at this moment.
bool isDebuggerAttached();

/// Starts a thread on which no signal of the process is delivered, so that handlers of the host never run there. Throws
/// `std::system_error` if there can be no more threads.
std::thread startQuietThread(std::function<void()> work);

/// Has `before` called before each fork of the process, then `inParent` and `inChild` after it, all on the forking
/// thread, until the module that contains them is unloaded. The child has no other thread.
void onFork(void (*before)(), void (*inParent)(), void (*inChild)());

}  // namespace kvan::sys
