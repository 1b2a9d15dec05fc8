#include "workbench/svg/data_uri.h"

#include <zlib.h>

#include <algorithm>

#include "workbench/svg/svg_values.h"
#include "workbench/svg/tag_words.h"

namespace workbench {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kPngStart = "data:image/png;base64,";

int Base64DigitOf(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

bool DecodeBase64(std::string_view text, std::vector<uint8_t>* bytes) {
    bytes->clear();
    bytes->reserve(text.size() / 4 * 3 + 3);
    uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        if (IsBlank(c)) continue;
        if (c == '=') break;
        const int digit = Base64DigitOf(c);
        if (digit < 0) return false;
        bits = (bits << 6 | static_cast<uint32_t>(digit)) & 0xFFFFFF;
        if (++count < 4) continue;
        for (const int shift : {16, 8, 0}) bytes->push_back(static_cast<uint8_t>(bits >> shift));
        count = 0;
    }
    if (count >= 2) bytes->push_back(static_cast<uint8_t>(bits >> (count * 6 - 8)));
    if (count == 3) bytes->push_back(static_cast<uint8_t>(bits >> 2));
    return count != 1;
}

} // namespace

std::string Base64Text(std::span<const uint8_t> bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t there = std::min<size_t>(bytes.size() - i, 3);
        uint32_t bits = 0;
        for (size_t n = 0; n < 3; ++n) bits = bits << 8 | (n < there ? bytes[i + n] : 0u);
        for (size_t n = 0; n < 4; ++n) text += n <= there ? kDigits[bits >> (18 - 6 * n) & 63] : '=';
    }
    return text;
}

bool BytesOfBase64(std::string_view text, std::vector<uint8_t>* bytes) {
    if (text.find('%') == std::string_view::npos) return DecodeBase64(text, bytes);
    return DecodeBase64(BytesOfPercentText(text), bytes);
}

bool BytesOfDataUri(std::string_view href, std::vector<uint8_t>* bytes) {
    const size_t comma = href.find(',');
    if (!IsDataUri(href) || comma == std::string_view::npos) return false;
    const std::string_view content = href.substr(comma + 1);
    if (Trim(href.substr(0, comma)).ends_with(";base64")) return BytesOfBase64(content, bytes);
    const std::string decoded = BytesOfPercentText(content);
    bytes->assign(decoded.begin(), decoded.end());
    return true;
}

std::string PngDataUri(std::span<const uint8_t> file) {
    return std::string(kPngStart) + Base64Text(file);
}

std::string PackedText(std::span<const uint8_t> bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::vector<uint8_t> packed(size);
    if (compress2(packed.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), 6) != Z_OK) return {};
    return Base64Text(std::span(packed).first(size));
}

bool BytesOfPackedText(std::string_view text, size_t most, std::vector<uint8_t>* bytes) {
    std::vector<uint8_t> packed;
    if (!BytesOfBase64(text, &packed)) return false;
    // Deflate packs at most about a thousandfold: no more room is made than the text can fill.
    constexpr size_t kMostGrowth = 1040;
    bytes->assign(std::min(most, packed.size() * kMostGrowth), 0);
    uint8_t spare = 0;
    uLongf size = static_cast<uLongf>(bytes->size());
    uint8_t* const room = bytes->empty() ? &spare : bytes->data();
    if (uncompress(room, &size, packed.data(), static_cast<uLong>(packed.size())) != Z_OK) return false;
    bytes->resize(size);
    return true;
}

} // namespace workbench
