#include "plugin/panel/text_cut.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "plugin/store/cp932.h"

namespace {

constexpr char kDots[] = "...";
constexpr int kDotsBytes = 3;

} // namespace

size_t BytesBeforeDots(const char* text, const int* widths, int dotsWidth, int limit) {
    size_t fits = 0;
    for (size_t at = 0; text[at] != '\0';) {
        const size_t end = at + CharacterBytes(text + at);
        if (text[end] == '\0') break;
        if (widths[end - 1] + dotsWidth < limit) fits = end;
        at = end;
    }
    return fits;
}

std::string CutToWidth(HDC context, const char* text, int limit) {
    const int bytes = static_cast<int>(std::strlen(text));
    SIZE size{};
    if (bytes == 0) return text;
    std::vector<int> widths(static_cast<size_t>(bytes));
    GetTextExtentExPointA(context, text, bytes, 0, nullptr, nullptr, &size);
    if (size.cx <= limit) return text;
    int fit = 0;
    SIZE dots{};
    GetTextExtentExPointA(context, text, bytes, 0x7FFFFFFF, &fit, widths.data(), &size);
    GetTextExtentExPointA(context, kDots, kDotsBytes, 0, nullptr, nullptr, &dots);
    return std::string(text, BytesBeforeDots(text, widths.data(), dots.cx, limit)) + kDots;
}
