/// The addresses of a loaded module, to be made unusable once it is unloaded: a call or a read of anything
/// that was left behind there ends the program, and the module has to be loaded elsewhere.
#pragma once

#include <cstddef>

class BlockedRange {
public:
    /// Notes where the module lies that `inside`, an address of its code or its handle, belongs to.
    explicit BlockedRange(const void* inside);
    ~BlockedRange();
    BlockedRange(const BlockedRange&) = delete;
    BlockedRange& operator=(const BlockedRange&) = delete;

    /// Until the end of the object.  False if something else is there, the module for instance.
    bool Block();
    bool Contains(const void* address) const;

private:
    char* begin_ = nullptr;
    size_t bytes_ = 0;
    bool blocked_ = false;
};
