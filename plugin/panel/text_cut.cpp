#include "plugin/panel/text_cut.h"

#include <cstring>
#include <limits>

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

ShownText CutToWidth(HDC context, const char* text, int limit) {
    ShownText shown;
    CopyText(shown.bytes, kShownBytes, text);
    shown.count = static_cast<int>(std::strlen(shown.bytes));
    if (shown.count == 0) return shown;
    int widths[kShownBytes] = {};
    int fit = 0;
    SIZE size{}, dots{};
    GetTextExtentExPointA(context, shown.bytes, shown.count, std::numeric_limits<int>::max(), &fit, widths,
                          &size);
    if (size.cx <= limit) return shown;
    GetTextExtentExPointA(context, kDots, kDotsBytes, 0, nullptr, nullptr, &dots);
    const size_t kept = BytesBeforeDots(shown.bytes, widths, dots.cx, limit);
    std::memcpy(shown.bytes + kept, kDots, sizeof kDots);
    shown.count = static_cast<int>(kept) + kDotsBytes;
    return shown;
}
