#include "workbench/svg/text_encoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

constexpr uint32_t kReplacement = 0xFFFD;

/// Windows-1252 from 0x80 to 0x9F; 0 where it has none.
constexpr uint16_t kUpperControls[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                         0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::string DecodeWestern(std::span<const uint8_t> bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const uint8_t byte : bytes) {
        if (byte < 0x80)
            text.push_back(static_cast<char>(byte));
        else
            AppendUtf8(&text, byte >= 0xA0 ? byte : kUpperControls[byte - 0x80]);
    }
    return text;
}

std::string DecodeUtf16(std::span<const uint8_t> bytes, bool bigEndian) {
    std::string text;
    text.reserve(bytes.size());
    const auto unit = [&](size_t at) -> uint32_t {
        return bigEndian ? (bytes[at] << 8 | bytes[at + 1]) : (bytes[at + 1] << 8 | bytes[at]);
    };
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        uint32_t code = unit(at);
        const bool high = code >= 0xD800 && code < 0xDC00;
        if (high && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        }
        AppendUtf8(&text, code);
    }
    return text;
}

/// Bytes of the well-formed sequence at `at`, or 0.
size_t SequenceLength(std::span<const uint8_t> bytes, size_t at) {
    const uint8_t lead = bytes[at];
    if (lead < 0x80) return 1;
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() - at < length) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((bytes[at + i] & 0xC0) != 0x80) return 0;
    const uint8_t second = bytes[at + 1];
    const bool bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return bad ? 0 : length;
}

std::string DecodeUtf8(std::span<const uint8_t> bytes, bool* damaged) {
    std::string text;
    text.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = SequenceLength(bytes, at);
        if (length == 0) {
            AppendUtf8(&text, kReplacement);
            *damaged = true;
            ++at;
            continue;
        }
        text.append(reinterpret_cast<const char*>(bytes.data()) + at, length);
        at += length;
    }
    return text;
}

/// All other encodings that the system knows.
bool DecodeByName(std::span<const uint8_t> bytes, const std::string& name, std::string* text, bool* damaged) {
    const iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return false;
    char* in = const_cast<char*>(reinterpret_cast<const char*>(bytes.data()));
    size_t left = bytes.size();
    char buffer[4096];
    while (left > 0 && text->size() <= 4 * kMaxFileBytes) {
        char* out = buffer;
        size_t room = sizeof buffer;
        const size_t result = iconv(converter, &in, &left, &out, &room);
        text->append(buffer, sizeof buffer - room);
        if (result != static_cast<size_t>(-1) || errno == E2BIG) continue;
        AppendUtf8(text, kReplacement);
        *damaged = true;
        ++in;
        --left;
    }
    iconv_close(converter);
    return true;
}

std::string DeclaredEncoding(std::span<const uint8_t> bytes) {
    const std::string_view head(reinterpret_cast<const char*>(bytes.data()),
                                std::min<size_t>(bytes.size(), 512));
    if (!head.starts_with("<?xml")) return {};
    const std::string_view declaration = head.substr(0, head.find("?>"));
    size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) return {};
    at = declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos) return {};
    const size_t stop = declaration.find(declaration[at], at + 1);
    if (stop == std::string_view::npos) return {};
    std::string name(declaration.substr(at + 1, stop - at - 1));
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return name;
}

} // namespace

void AppendUtf8(std::string* text, uint32_t code) {
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = kReplacement;
    const auto put = [&](uint32_t byte) { text->push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

bool IsXmlText(std::string_view text) {
    const std::span<const uint8_t> bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = SequenceLength(bytes, at);
        const uint8_t byte = bytes[at];
        const bool control = byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
        // U+FFFE and U+FFFF are no signs.
        const bool none = length == 3 && byte == 0xEF && bytes[at + 1] == 0xBF && bytes[at + 2] >= 0xBE;
        if (length == 0 || control || none) return false;
        at += length;
    }
    return true;
}

bool DecodeXml(std::span<const uint8_t> bytes, std::string* text, bool* damaged, std::string* error) {
    *damaged = false;
    const auto byte = [&](size_t at) -> int { return at < bytes.size() ? bytes[at] : -1; };
    if (byte(0) == 0xFE && byte(1) == 0xFF) return *text = DecodeUtf16(bytes.subspan(2), true), true;
    if (byte(0) == 0xFF && byte(1) == 0xFE) return *text = DecodeUtf16(bytes.subspan(2), false), true;
    if (byte(0) == 0 && byte(1) == '<') return *text = DecodeUtf16(bytes, true), true;
    if (byte(0) == '<' && byte(1) == 0) return *text = DecodeUtf16(bytes, false), true;
    if (byte(0) == 0xEF && byte(1) == 0xBB && byte(2) == 0xBF) bytes = bytes.subspan(3);

    const std::string name = DeclaredEncoding(bytes);
    if (name == "iso-8859-1" || name == "latin1" || name == "windows-1252")
        return *text = DecodeWestern(bytes), true;
    // A declaration that says UTF-16 in single bytes was left behind by a conversion.
    if (name.empty() || name == "utf-8" || name == "utf8" || name == "us-ascii" || name.starts_with("utf-16"))
        return *text = DecodeUtf8(bytes, damaged), true;
    text->clear();
    if (DecodeByName(bytes, name, text, damaged)) return true;
    *error = "the file's encoding \"" + name + "\" is not known";
    return false;
}

} // namespace workbench
