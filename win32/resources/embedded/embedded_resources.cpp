// The compiled resources of the module that this file is linked into.  VELQUORNE_RESOURCES_FILE is the .res
// file that the Windows build links too.
#include <cstdint>

#include "win32/module_resources.h"

asm(".pushsection .rodata\n"
    ".balign 4\n"
    "embeddedResources:\n"
    ".incbin \"" VELQUORNE_RESOURCES_FILE
    "\"\n"
    "embeddedResourcesEnd:\n"
    ".popsection\n");

extern "C" {
[[gnu::visibility("hidden")]] extern const uint8_t embeddedResources[];
[[gnu::visibility("hidden")]] extern const uint8_t embeddedResourcesEnd[];
}

namespace {

struct EmbeddedResources {
    HMODULE module = nullptr;

    EmbeddedResources() {
        constexpr DWORD kOfAddress =
            GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
        const auto bytes = static_cast<size_t>(embeddedResourcesEnd - embeddedResources);
        if (GetModuleHandleExA(kOfAddress, reinterpret_cast<LPCSTR>(embeddedResources), &module))
            AddModuleResources(module, embeddedResources, bytes);
    }
    ~EmbeddedResources() { RemoveModuleResources(module); }
    EmbeddedResources(const EmbeddedResources&) = delete;
    EmbeddedResources& operator=(const EmbeddedResources&) = delete;
};

const EmbeddedResources embedded;

} // namespace
