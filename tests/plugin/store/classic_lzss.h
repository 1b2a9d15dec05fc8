/// A second coder of packed bodies, written straight from the published description, byte by byte: the
/// measure of the store's own.  Slow, and without limits of room.
#pragma once

#include <cstdint>
#include <vector>

std::vector<uint8_t> ClassicPack(const std::vector<uint8_t>& plain);
std::vector<uint8_t> ClassicUnpack(const std::vector<uint8_t>& packed);
