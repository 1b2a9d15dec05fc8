#include "workbench/suites/text_encoding.h"

#include <windows.h>

#include "suites/host_types.h"

namespace workbench {

namespace {

constexpr UINT kCodePage932 = 932;
constexpr char32_t kReplacement = 0xFFFD;

bool IsLead(uint8_t byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

void AppendUtf8(std::string& text, char32_t c) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

/// Takes one character off the front.  A byte that begins no well-formed character is U+FFFD by itself.
char32_t TakeUtf8(std::string_view& text) {
    const auto byteAt = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
    const uint8_t first = byteAt(0);
    size_t length = 1;
    char32_t c = kReplacement, least = 0;
    if (first < 0x80) {
        c = first;
    } else if (first >= 0xC2 && first < 0xE0) {
        length = 2, least = 0x80, c = first & 0x1Fu;
    } else if (first >= 0xE0 && first < 0xF0) {
        length = 3, least = 0x800, c = first & 0x0Fu;
    } else if (first >= 0xF0 && first < 0xF5) {
        length = 4, least = 0x10000, c = first & 0x07u;
    }
    bool good = length <= text.size();
    for (size_t i = 1; good && i < length; ++i) {
        good = (byteAt(i) & 0xC0) == 0x80;
        c = (c << 6) | (byteAt(i) & 0x3Fu);
    }
    if (!good || c < least || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) {
        length = 1;
        c = kReplacement;
    }
    text.remove_prefix(length);
    return c;
}

/// One character of cp932, one or two bytes.
char32_t DecodeCp932Character(std::string_view bytes) {
    WCHAR wide[2];
    const int count = MultiByteToWideChar(kCodePage932, MB_ERR_INVALID_CHARS, bytes.data(),
                                          static_cast<int>(bytes.size()), wide, 2);
    return count == 1 ? static_cast<char32_t>(wide[0]) : kReplacement;
}

std::string DecodeCp932(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        size_t length = IsLead(static_cast<uint8_t>(bytes[0])) && bytes.size() > 1 ? 2 : 1;
        char32_t c = static_cast<uint8_t>(bytes[0]);
        if (c >= 0x80) c = DecodeCp932Character(bytes.substr(0, length));
        if (c == kReplacement) length = 1;
        AppendUtf8(text, c);
        bytes.remove_prefix(length);
    }
    return text;
}

void AppendCp932(std::string& bytes, char32_t c) {
    if (c < 0x80) {
        bytes += static_cast<char>(c);
        return;
    }
    char out[2];
    BOOL replaced = FALSE;
    const auto wide = static_cast<WCHAR>(c);
    const int count = c > 0xFFFF ? 0
                                 : WideCharToMultiByte(kCodePage932, WC_NO_BEST_FIT_CHARS, &wide, 1, out,
                                                       sizeof out, "?", &replaced);
    if (count < 1 || replaced)
        bytes += '?';
    else
        bytes.append(out, static_cast<size_t>(count));
}

bool IsCp932(int32_t encoding) {
    return encoding == kEncodingPlatform || encoding == kEncodingCp932;
}

} // namespace

std::optional<std::string> DecodeText(std::string_view bytes, int32_t encoding) {
    if (IsCp932(encoding)) return DecodeCp932(bytes);
    if (encoding != kEncodingUtf8) return std::nullopt;
    std::string text;
    while (!bytes.empty()) AppendUtf8(text, TakeUtf8(bytes));
    return text;
}

std::optional<std::string> EncodeText(std::string_view utf8, int32_t encoding) {
    if (encoding == kEncodingUtf8) return std::string(utf8);
    if (!IsCp932(encoding)) return std::nullopt;
    std::string bytes;
    while (!utf8.empty()) AppendCp932(bytes, TakeUtf8(utf8));
    return bytes;
}

} // namespace workbench
