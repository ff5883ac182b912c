#include "self_holder.h"

#include "diagnostic.h"

// The registry outlives the module that brought it unless that module is kept loaded: its sinks are code of this
// library. A handle that cannot be had is said on standard error and ignored, since a log is no reason to refuse to
// run.
namespace kvan::logging::impl {

namespace {
/// Stands in this module, wherever that is loaded.
const char g_here = 0;
}  // namespace

std::optional<sys::LoadedModule> aquire_handle() {
    auto handle = sys::LoadedModule::pinned(&g_here);
    if (!handle)
        writeToErrorChannel("Could not acquire current module handle\n");
    return handle;
}

void release_handle(std::optional<sys::LoadedModule>& handle) {
    if (handle && !handle->release())
        writeToErrorChannel("Could not release current module handle\n");
    handle.reset();
}

namespace os {

self_holder::self_holder() : m_program(sys::LoadedModule::program()) {
    if (!m_program)
        writeToErrorChannel("Could not acquire executable handle\n");
}

self_holder::~self_holder() {
    if (m_program)
        m_program->release();
}

}  // namespace os
}  // namespace kvan::logging::impl
