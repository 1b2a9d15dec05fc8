/// The searches of a drag against a plain writing of their rules.
#pragma once

#include <cstdint>
#include <string>

/// Makes `moves` moves, each by walking, with the index of a drag and plainly, half of them over random art
/// and half over the drawings below `drawings`, all over random art if that is empty.  1 if a result differs
/// in any bit, else 0.
int RunSnaps(uint64_t moves, unsigned seed, const std::string& drawings);
