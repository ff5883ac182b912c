#pragma once

#include <atomic>
#include <optional>

/// The platform seam for what concerns the program and the libraries that are loaded into the process.
namespace kvan::sys {

/// A counted reference to a loaded program or library; whoever has one gives it back by `release`.
class LoadedModule {
public:
    /// The program itself, not the libraries that it is linked with. Empty if the system does not give it.
    static std::optional<LoadedModule> program();

    /// The module whose code or data stands at `address`; it will not be unloaded before the process ends, even when
    /// the reference is given back. Empty if the system does not give it.
    static std::optional<LoadedModule> pinned(const void* address);

    /// Address of the symbol that this module exports under `name`; null if it does not.
    void* symbol(const char* name) const;

    /// Gives the reference back; false when the system refuses.
    bool release();

private:
    explicit LoadedModule(void* handle) : m_handle(handle) {}
    void* m_handle;
};

/// One word of memory that is the same in every module of the process that is linked with this library; null at first.
/// Its content has no name that the dynamic linker could see.
std::atomic<void*>& processWideSlot();

}  // namespace kvan::sys
