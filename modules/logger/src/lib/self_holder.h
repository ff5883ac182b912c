#pragma once

#include <sysutils/loaded_module.h>

#include <bit>
#include <optional>

namespace kvan::logging::impl {

/// Keeps the module of this library, and with it the code of the sinks, in the process until it ends. What cannot be
/// had is said on standard error and otherwise ignored.
std::optional<sys::LoadedModule> aquire_handle();
void release_handle(std::optional<sys::LoadedModule>& handle);

namespace os {

/// The program that this library is loaded into, and the functions that it exports for the library to call.
class self_holder {
public:
    self_holder();
    self_holder(const self_holder&) = delete;
    self_holder& operator=(const self_holder&) = delete;
    ~self_holder();

    explicit operator bool() const { return m_program.has_value(); }

    /// Null if the program does not export the function.
    template <class Function>
    Function* function(const char* name) const {
        return std::bit_cast<Function*>(m_program->symbol(name));
    }

private:
    std::optional<sys::LoadedModule> m_program;
};

}  // namespace os
}  // namespace kvan::logging::impl
