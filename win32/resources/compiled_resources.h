/// The entries of a compiled .res file.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>

/// A type or a name: a number, or a text in capitals (letters beyond ASCII become '?').
struct ResourceId {
    uint16_t number = 0;
    std::string text;
    bool operator==(const ResourceId&) const = default;
};

struct ResourceEntry {
    ResourceId type, name;
    std::span<const uint8_t> data; ///< into the file's bytes
};

/// All entries up to the first one that doesn't fit into the bytes.
std::deque<ResourceEntry> ReadCompiledResources(std::span<const uint8_t> bytes);
