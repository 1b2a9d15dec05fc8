/// Packs texts whose strings come in an order that turns the form's trees into lists.  Only the packer
/// includes this.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// As PackLzss.
std::optional<uint64_t> PackSorted(std::span<const uint8_t> plain, std::span<uint8_t> packed);
