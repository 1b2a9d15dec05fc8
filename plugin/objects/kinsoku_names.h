/// The names by which a record's kinsoku kinds know the host's kinsoku sets.
#pragma once

#include <cstdint>

enum StoredKinsokuKind : uint16_t { kStoredKinsokuSoft = 0, kStoredKinsokuHard = 1 };

/// True if the name begins with the kind's word, in UTF-16 of either byte order; what goes on behind it
/// doesn't count.  No name begins with that of any other kind.
/// @param name  at least four units
inline bool IsKinsokuName(const char16_t* name, uint16_t kind) {
    constexpr char16_t kWords[][4] = {{u'S', u'o', u'f', u't'}, {u'H', u'a', u'r', u'd'}};
    if (kind > kStoredKinsokuHard) return false;
    bool same = true, swapped = true;
    for (int i = 0; i < 4; ++i) {
        same = same && name[i] == kWords[kind][i];
        swapped = swapped && name[i] == static_cast<char16_t>(kWords[kind][i] << 8);
    }
    return same || swapped;
}
