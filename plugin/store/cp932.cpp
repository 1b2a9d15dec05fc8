#include "plugin/store/cp932.h"

#include <algorithm>
#include <cstring>

const char* FindPart(const char* text, const char* part) {
    const size_t length = std::strlen(part);
    for (; *text != '\0'; text += CharacterBytes(text)) {
        if (std::strncmp(text, part, length) == 0) return text;
    }
    return length == 0 ? text : nullptr;
}

void CopyText(char* out, size_t capacity, const char* text) {
    const size_t length = strnlen(text, capacity - 1);
    std::memmove(out, text, length);
    out[length] = '\0';
}

std::string_view CutWhole(std::string_view text, size_t bytes) {
    const size_t room = std::min(bytes, text.size());
    size_t end = 0;
    while (end < room) {
        const size_t next = end + (IsLeadByte(static_cast<uint8_t>(text[end])) ? 2 : 1);
        if (next > room) break;
        end = next;
    }
    return text.substr(0, end);
}
