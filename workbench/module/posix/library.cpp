#include "workbench/module/library.h"

#include <dlfcn.h>

#include <utility>

namespace workbench {

Library Library::Load(const std::string& file, std::string& error) {
    Library library;
    library.handle_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library.handle_) error = dlerror();
    return library;
}

Library& Library::operator=(Library&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

void* Library::Find(const char* name) const {
    return handle_ ? dlsym(handle_, name) : nullptr;
}

void Library::Unload() {
    if (handle_) dlclose(handle_);
    handle_ = nullptr;
}

bool Library::IsInProcess(const std::string& file) {
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    return handle != nullptr;
}

} // namespace workbench
