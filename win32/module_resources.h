/// How a module brings its resources on POSIX: the bytes of a compiled .res file, named when it is loaded.
///
/// A .res file comes from an untrusted tool as far as this layer knows: it is read with every size checked,
/// and an entry that leads outside of it isn't there.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

/// `module` is the module's handle as GetModuleHandleExA gives it for an address in it.  The bytes are not
/// copied; a module removes them when it is unloaded.
void AddModuleResources(HMODULE module, const uint8_t* bytes, size_t count);
void RemoveModuleResources(HMODULE module);
