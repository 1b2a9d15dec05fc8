/// A second coder of packed bodies, written straight from the published description, byte by byte: the
/// measure of the store's own, in bytes and in time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Writes at most MostPackedBytes(bytes) to `out` and returns how many.
size_t ClassicPack(const uint8_t* plain, size_t bytes, uint8_t* out);
/// Writes to `out`, which has room for all that comes out, and returns the bytes written.
size_t ClassicUnpack(const uint8_t* packed, size_t bytes, uint8_t* out);

std::vector<uint8_t> ClassicPack(const std::vector<uint8_t>& plain);
std::vector<uint8_t> ClassicUnpack(const std::vector<uint8_t>& packed);
