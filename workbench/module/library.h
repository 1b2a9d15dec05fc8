/// A loaded module of the platform: a shared library or a DLL.
#pragma once

#include <string>

namespace workbench {

/// Unloads the library at the end of its life.
class Library {
public:
    /// Loads the file; symbols stay private to it, and everything it needs is resolved at once.  On failure
    /// the library is not loaded and `error` says why.
    static Library Load(const std::string& file, std::string& error);

    Library() = default;
    ~Library() { Unload(); }
    Library(Library&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
    Library& operator=(Library&& other) noexcept;

    bool loaded() const { return handle_ != nullptr; }

    /// The address of an exported function, null if there is none of that name.
    void* Find(const char* name) const;

    void Unload();

    /// Is the file in the process, whoever loaded it?
    static bool IsInProcess(const std::string& file);

private:
    void* handle_ = nullptr;
};

} // namespace workbench
