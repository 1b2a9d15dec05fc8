#include "win32/utf8.h"

namespace {

struct Sequence {
    int following;
    char32_t bits;
};

Sequence SequenceOfLead(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return {1, static_cast<char32_t>(lead & 0x1F)};
    if (lead >= 0xE0 && lead <= 0xEF) return {2, static_cast<char32_t>(lead & 0x0F)};
    if (lead >= 0xF0 && lead <= 0xF4) return {3, static_cast<char32_t>(lead & 0x07)};
    return {-1, 0};
}

// The second byte alone decides whether the sequence is overlong, a surrogate or out of range.
bool SecondByteFits(unsigned char lead, unsigned char second) {
    switch (lead) {
        case 0xE0:
            return second >= 0xA0;
        case 0xED:
            return second < 0xA0;
        case 0xF0:
            return second >= 0x90;
        case 0xF4:
            return second < 0x90;
        default:
            return true;
    }
}

} // namespace

char32_t TakeUtf8(std::string_view& rest) {
    const auto lead = static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
    if (lead < 0x80) return lead;
    auto [following, character] = SequenceOfLead(lead);
    if (following < 0) return kInvalidUtf8;
    for (int i = 0; i < following; ++i) {
        if (rest.empty()) return kInvalidUtf8;
        const auto next = static_cast<unsigned char>(rest[0]);
        if ((next & 0xC0) != 0x80) return kInvalidUtf8;
        rest.remove_prefix(1);
        if (i == 0 && !SecondByteFits(lead, next)) return kInvalidUtf8;
        character = character << 6 | (next & 0x3F);
    }
    return character;
}

void AppendUtf8(std::string& text, char32_t character) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3F));
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}
