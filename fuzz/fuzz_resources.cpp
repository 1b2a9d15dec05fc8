// A compiled file of resources: any bytes.  Whatever is asked of it, nothing outside of the bytes is read,
// and what is found lies within them.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "win32/gdi/icon.h"
#include "win32/module_resources.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void TryResource(HMODULE module, LPCSTR name, LPCSTR type, const uint8_t* bytes, size_t count) {
    const HRSRC resource = FindResourceA(module, name, type);
    if (resource == nullptr) return;
    const auto* const data = static_cast<const uint8_t*>(LockResource(LoadResource(module, resource)));
    const DWORD size = SizeofResource(module, resource);
    Require(size <= count && (size == 0 || (data >= bytes && data + size <= bytes + count)));
}

void TryImage(HICON icon) {
    if (icon == nullptr) return;
    const IconPicture* const picture = PictureOfIcon(icon);
    Require(picture != nullptr && picture->width > 0 && picture->height > 0);
    const HDC context = CreateCompatibleDC(nullptr);
    DrawIcon(context, 0, 0, icon);
    DrawIconEx(context, -5, -5, icon, 7, 90, 0, nullptr, DI_NORMAL);
    DeleteDC(context);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t count) {
    const auto module = reinterpret_cast<HMODULE>(uintptr_t{0x1000});
    // Bytes of their own, so that a read beyond them shows.
    const auto bytes = std::make_unique<uint8_t[]>(count);
    if (count > 0) std::memcpy(bytes.get(), data, count);
    AddModuleResources(module, bytes.get(), count);
    for (int number = 0; number < 40; ++number) {
        for (const LPCSTR type : {RT_CURSOR, RT_ICON, RT_DIALOG, RT_STRING, RT_GROUP_CURSOR, RT_GROUP_ICON})
            TryResource(module, MAKEINTRESOURCEA(number), type, bytes.get(), count);
        TryResource(module, MAKEINTRESOURCEA(number), "PIPL", bytes.get(), count);
        TryImage(LoadIconA(module, MAKEINTRESOURCEA(number)));
        TryImage(LoadCursorA(module, MAKEINTRESOURCEA(number)));
        char text[20];
        const int length = LoadStringA(module, static_cast<UINT>(number), text, sizeof text);
        Require(length >= 0 && length < 20 && std::strlen(text) <= static_cast<size_t>(length));
    }
    RemoveModuleResources(module);
    return 0;
}
