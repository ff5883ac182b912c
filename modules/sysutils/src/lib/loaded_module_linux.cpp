#include <sysutils/loaded_module.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <dlfcn.h>
#include <link.h>

// Every module that is linked with this file carries its own slot and an ELF note of this owner that says where the
// slot lies, as the distance from the telling itself. The notes are what the modules find one another by: they need no
// name in the symbol table, no file and no variable of the environment, and a forked child inherits them.
extern "C" {
[[gnu::visibility("hidden"), gnu::used]] constinit std::atomic<void*> kvan_sys_module_slot{nullptr};
}
__asm__(
    ".pushsection .note.kvan.slot,\"a\",%note\n"
    "  .balign 4\n"
    "  .long 2f-1f, 4f-3f, 1\n"
    "1:.asciz \"kvan.sys.slot.1\"\n"
    "2:.balign 4\n"
    "3:.quad kvan_sys_module_slot-3b\n"
    "4:.popsection\n");

namespace kvan::sys {

namespace {

using Slot = std::atomic<void*>;
using Bytes = std::span<const std::byte>;

constexpr std::string_view g_slotOwner("kvan.sys.slot.1", 16);

/// The program is the module that the dynamic linker keeps without a name.
bool isProgram(const link_map& module) {
    return module.l_name == nullptr || *module.l_name == '\0';
}

const link_map* moduleAt(const void* address) {
    Dl_info unused{};
    void* module = nullptr;
    return ::dladdr1(address, &unused, &module, RTLD_DL_LINKMAP) != 0 ? static_cast<const link_map*>(module) : nullptr;
}

std::size_t padded(std::size_t size) {
    return (size + 3) / 4 * 4;
}

/// The value of the first bytes, of which there are enough.
template <class Value>
Value valueIn(Bytes bytes) {
    std::array<std::byte, sizeof(Value)> own;
    std::copy_n(bytes.begin(), own.size(), own.begin());
    return std::bit_cast<Value>(own);
}

bool isOwners(Bytes name) {
    const Bytes owner = std::as_bytes(std::span(g_slotOwner));
    return std::equal(name.begin(), name.end(), owner.begin(), owner.end());
}

/// The slot that the notes name; null if they name none.
Slot* slotInNotes(Bytes notes) {
    while (notes.size() >= sizeof(ElfW(Nhdr))) {
        const auto head = valueIn<ElfW(Nhdr)>(notes);
        notes = notes.subspan(sizeof head);
        // Name and content each begin at a multiple of 4 bytes. The sizes are held against what is left: the notes of
        // other modules may be anything.
        const std::size_t nameSize = padded(head.n_namesz);
        const std::size_t contentSize = padded(head.n_descsz);
        if (nameSize > notes.size() || contentSize > notes.size() - nameSize)
            return nullptr;
        const Bytes content = notes.subspan(nameSize, head.n_descsz);
        if (isOwners(notes.first(head.n_namesz)) && content.size() == sizeof(std::int64_t))
            return std::bit_cast<Slot*>(std::bit_cast<std::intptr_t>(content.data()) + valueIn<std::int64_t>(content));
        notes = notes.subspan(nameSize + contentSize);
    }
    return nullptr;
}

int findSlot(dl_phdr_info* module, std::size_t, void* found) {
    for (int i = 0; i < module->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = module->dlpi_phdr[i];
        // Notes with an alignment above 4 bytes are laid out otherwise and are none of ours.
        if (segment.p_type != PT_NOTE || segment.p_align > 4)
            continue;
        const auto* const start = std::bit_cast<const std::byte*>(module->dlpi_addr + segment.p_vaddr);
        Slot* slot = slotInNotes({start, segment.p_memsz});
        if (slot != nullptr) {
            *static_cast<Slot**>(found) = slot;
            return 1;
        }
    }
    return 0;
}

}  // namespace

std::optional<LoadedModule> LoadedModule::program() {
    void* handle = ::dlopen(nullptr, RTLD_LAZY);
    return handle != nullptr ? std::optional(LoadedModule(handle)) : std::nullopt;
}

std::optional<LoadedModule> LoadedModule::pinned(const void* address) {
    const link_map* module = moduleAt(address);
    if (module == nullptr)
        return std::nullopt;
    if (isProgram(*module))
        return program();
    // NOLOAD: only what is loaded already is named, nothing is loaded. NODELETE stays with the module for good.
    void* handle = ::dlopen(module->l_name, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    return handle != nullptr ? std::optional(LoadedModule(handle)) : std::nullopt;
}

void* LoadedModule::symbol(const char* name) const {
    // The lookup goes on in the libraries that the module is linked with; what is found there is not the module's own.
    void* address = ::dlsym(m_handle, name);
    if (address == nullptr)
        return nullptr;
    const link_map* owner = moduleAt(address);
    const link_map* self = nullptr;
    return owner != nullptr && ::dlinfo(m_handle, RTLD_DI_LINKMAP, &self) == 0 && owner == self ? address : nullptr;
}

bool LoadedModule::release() {
    return ::dlclose(m_handle) == 0;
}

std::atomic<void*>& processWideSlot() {
    // Modules are walked in the order of their loading, so all of them find the same one.
    Slot* slot = nullptr;
    ::dl_iterate_phdr(&findSlot, static_cast<void*>(&slot));
    if (slot == nullptr)
        slot = &kvan_sys_module_slot;
    (void)LoadedModule::pinned(slot);
    return *slot;
}

}  // namespace kvan::sys
