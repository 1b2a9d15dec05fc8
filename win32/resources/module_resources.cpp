#include "win32/module_resources.h"

#include <dlfcn.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "win32/last_error.h"
#include "win32/resources/compiled_resources.h"
#include "win32/resources/module_images.h"

namespace {

struct Module {
    HMODULE handle;
    std::deque<ResourceEntry> entries; // whose places don't move: they are the handles
};

std::vector<Module>& Modules() {
    static std::vector<Module> modules;
    return modules;
}

const Module* FindModule(HMODULE handle) {
    const auto& modules = Modules();
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [handle](const Module& module) { return module.handle == handle; });
    return found == modules.end() ? nullptr : &*found;
}

// Nothing for a text where only a number will do.
bool ReadIdArgument(LPCSTR argument, bool textAllowed, ResourceId& id) {
    const auto number = reinterpret_cast<uintptr_t>(argument);
    if (number <= 0xFFFF) {
        id.number = static_cast<uint16_t>(number);
        return true;
    }
    if (!textAllowed) return false;
    for (const char letter : std::string_view(argument))
        id.text += letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 0x20) : letter;
    return true;
}

const ResourceEntry* EntryOf(HMODULE module, const void* resource) {
    const Module* const owner = FindModule(module);
    if (owner == nullptr) return nullptr;
    for (const ResourceEntry& entry : owner->entries)
        if (&entry == resource) return &entry;
    return nullptr;
}

struct LoadedImage {
    HMODULE module;
    uint16_t number;
    bool cursor;
    HICON icon;
};
std::vector<LoadedImage>& LoadedImages() {
    static std::vector<LoadedImage> images;
    return images;
}

std::span<const uint8_t> BytesOf(HMODULE module, uint16_t number, LPCSTR type) {
    const HRSRC resource = FindResourceA(module, MAKEINTRESOURCEA(number), type);
    const ResourceEntry* const entry = EntryOf(module, resource);
    return entry == nullptr ? std::span<const uint8_t>() : entry->data;
}

HICON ReadModuleImage(HMODULE module, uint16_t number, bool cursor) {
    const auto group = BytesOf(module, number, cursor ? RT_GROUP_CURSOR : RT_GROUP_ICON);
    const std::optional<uint16_t> chosen = ChooseFromGroup(group);
    if (!chosen) return nullptr;
    std::optional<IconPicture> picture =
        ReadIconPicture(BytesOf(module, *chosen, cursor ? RT_CURSOR : RT_ICON), cursor);
    return picture ? AddIcon(std::move(*picture)) : nullptr;
}

// The same handle for the same image, as long as its module is there.
HICON LoadModuleImage(HMODULE module, LPCSTR name, bool cursor) {
    ResourceId id;
    if (!ReadIdArgument(name, false, id)) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    for (const LoadedImage& image : LoadedImages())
        if (image.module == module && image.number == id.number && image.cursor == cursor) return image.icon;
    const HICON icon = ReadModuleImage(module, id.number, cursor);
    if (icon != nullptr) {
        LoadedImages().push_back({module, id.number, cursor, icon});
    } else {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    }
    return icon;
}

} // namespace

void AddModuleResources(HMODULE module, const uint8_t* bytes, size_t count) {
    LoadedImages(); // so that it outlives a static object that removes the module's resources
    RemoveModuleResources(module);
    Modules().push_back({module, ReadCompiledResources({bytes, count})});
}

void RemoveModuleResources(HMODULE module) {
    ForgetModuleImages(module);
    std::erase_if(Modules(), [module](const Module& known) { return known.handle == module; });
}

void ForgetModuleImages(HMODULE module) {
    std::erase_if(LoadedImages(), [module](const LoadedImage& image) {
        if (image.module == module) RemoveIcon(image.icon);
        return image.module == module;
    });
}

BOOL GetModuleHandleExA(DWORD flags, LPCSTR address, HMODULE* module) {
    if (module == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *module = nullptr;
    if (flags != (GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS)) {
        RefuseLoudly("GetModuleHandleExA: these flags");
        return FALSE;
    }
    Dl_info information = {};
    if (dladdr(address, &information) == 0 || information.dli_fbase == nullptr) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    *module = static_cast<HMODULE>(information.dli_fbase);
    return TRUE;
}

HRSRC FindResourceA(HMODULE module, LPCSTR name, LPCSTR type) {
    const Module* const owner = FindModule(module);
    ResourceId wantedName, wantedType;
    if (owner != nullptr && ReadIdArgument(name, false, wantedName) &&
        ReadIdArgument(type, true, wantedType)) {
        for (const ResourceEntry& entry : owner->entries)
            if (entry.name == wantedName && entry.type == wantedType)
                return reinterpret_cast<HRSRC>(const_cast<ResourceEntry*>(&entry));
    }
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
}

HGLOBAL LoadResource(HMODULE module, HRSRC resource) {
    const ResourceEntry* const entry = EntryOf(module, resource);
    if (entry == nullptr) SetLastError(ERROR_INVALID_HANDLE);
    return entry == nullptr ? nullptr : const_cast<uint8_t*>(entry->data.data());
}

LPVOID LockResource(HGLOBAL resource) {
    return resource;
}

DWORD SizeofResource(HMODULE module, HRSRC resource) {
    const ResourceEntry* const entry = EntryOf(module, resource);
    if (entry == nullptr) SetLastError(ERROR_INVALID_HANDLE);
    return entry == nullptr ? 0 : static_cast<DWORD>(entry->data.size());
}

HICON LoadIconA(HINSTANCE instance, LPCSTR name) {
    return LoadModuleImage(instance, name, false);
}

HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name) {
    if (instance != nullptr) return LoadModuleImage(instance, name, true);
    ResourceId id;
    const HCURSOR cursor = ReadIdArgument(name, false, id) ? SystemCursor(id.number) : nullptr;
    if (cursor == nullptr) SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return cursor;
}
