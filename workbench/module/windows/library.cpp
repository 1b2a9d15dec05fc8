#include "workbench/module/library.h"

#include <windows.h>

#include <utility>

namespace workbench {

Library Library::Load(const std::string& file, std::string& error) {
    Library library;
    library.handle_ = LoadLibraryA(file.c_str());
    if (!library.handle_) error = file + ": error " + std::to_string(GetLastError());
    return library;
}

Library& Library::operator=(Library&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

void* Library::Find(const char* name) const {
    return handle_ ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name)) : nullptr;
}

void Library::Unload() {
    if (handle_) FreeLibrary(static_cast<HMODULE>(handle_));
    handle_ = nullptr;
}

bool Library::IsInProcess(const std::string& file) {
    return GetModuleHandleA(file.c_str()) != nullptr;
}

} // namespace workbench
