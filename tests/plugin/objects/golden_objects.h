/// One object of each kind as it has to lie on disk, written out by hand, and as it lies in memory: with each
/// number in the host's order, since the structures' fields are asserted to lie at their places.  Every field
/// holds a number that a wrong width or a wrong place would change, gaps hold bytes that must stay.
#pragma once

#include "tests/plugin/objects/object_bytes.h"

struct Golden {
    Bytes host, stored;

    /// Each group of digits is one number; behind an apostrophe, bytes that lie the same in both.
    Golden& Hex(std::string_view groups);
    Golden& Fill(size_t count, uint8_t value = 0) { return Add({Bytes(count, value), Bytes(count, value)}); }
    Golden& Text(std::string_view text, size_t width) {
        const Bytes bytes = StoredBytes().Text(text, width).bytes();
        return Add({bytes, bytes});
    }
    Golden& Add(const Golden& more) {
        host.insert(host.end(), more.host.begin(), more.host.end());
        stored.insert(stored.end(), more.stored.begin(), more.stored.end());
        return *this;
    }
};

Golden GoldenPath();
Golden GoldenText();
Golden GoldenNote();
/// One tile and the paint of an art style behind it.
Golden GoldenRaster(uint16_t colorSpace);
Golden GoldenMesh();
