#include "win32/gdi/text.h"

#include "win32/codepage_932.h"

namespace {

// Takes the first unit off a text.
uint16_t TakeUnit(std::string_view& text) {
    const size_t bytes = Cp932UnitBytes(text);
    const uint16_t unit = Cp932UnitCode(text.substr(0, bytes));
    text.remove_prefix(bytes);
    return unit;
}

uint32_t Mixed(uint32_t under, uint32_t over, uint32_t coverage) {
    const auto channel = [=](int shift) {
        const uint32_t from = under >> shift & 0xFF, to = over >> shift & 0xFF;
        return (from * (255 - coverage) + to * coverage + 127) / 255 << shift;
    };
    return channel(16) | channel(8) | channel(0);
}

// `place` is where the glyph's ink lies on the surface, `part` what of it is drawn.
void DrawGlyph(Surface& surface, const Glyph& glyph, const RECT& place, const RECT& part, uint32_t color) {
    for (int y = part.top; y < part.bottom; ++y) {
        const size_t first = static_cast<size_t>(y - place.top) * static_cast<size_t>(glyph.width) +
                             static_cast<size_t>(part.left - place.left);
        const uint8_t* const coverage = glyph.coverage.data() + first;
        uint32_t* const row = surface.Row(y) + part.left;
        for (int i = 0; i < part.right - part.left; ++i) {
            if (coverage[i] == 255) {
                row[i] = color;
            } else if (coverage[i] != 0) {
                row[i] = Mixed(row[i], color, coverage[i]);
            }
        }
    }
}

void FillSpan(Context& context, const RECT& rectangle, const RECT& limit, uint32_t color) {
    ChangePixels(context, Common(OnSurface(context, rectangle), limit),
                 [color](uint32_t& pixel) { pixel = color; });
}

// Underlining and striking out, one pixel for each 14 of the letters' height.
void DrawRules(Context& context, const RECT& span, const RECT& limit, bool under, bool through) {
    const Typeface& typeface = *context.state.font->typeface;
    const int thickness = std::max(1, typeface.EmHeight() / 14);
    const uint32_t color = PixelOf(context.state.textColor);
    const int baseline = span.top + typeface.Ascent();
    const auto rule = [&](int top) {
        FillSpan(context, {span.left, top, span.right, top + thickness}, limit, color);
    };
    if (under) rule(baseline + 1);
    if (through) rule(baseline - typeface.EmHeight() * 3 / 10);
}

struct TextArguments {
    Context* context;
    std::string_view text;
    bool valid;

    TextArguments(HDC handle, LPCSTR bytes, int count)
        : context(ContextOf(handle)),
          valid(context != nullptr && count >= 0 && (bytes != nullptr || count == 0)) {
        if (valid && count > 0) text = {bytes, static_cast<size_t>(count)};
    }
};

} // namespace

int TextWidth(Context& context, std::string_view text) {
    Typeface& typeface = *context.state.font->typeface;
    int64_t width = 0;
    while (!text.empty()) width += typeface.GlyphOf(TakeUnit(text)).advance;
    return Near(width);
}

void DrawTextLine(Context& context, int x, int y, std::string_view text, const RECT* limit, int underlined) {
    const Font& font = *context.state.font;
    Typeface& typeface = *font.typeface;
    const RECT everywhere = {-kFarthest, -kFarthest, kFarthest, kFarthest};
    const RECT within = limit == nullptr ? everywhere : OnSurface(context, *limit);
    x = Near(x);
    y = Near(y);
    if (context.state.backMode == OPAQUE) {
        const RECT box = {x, y, Near(int64_t{x} + TextWidth(context, text)), y + typeface.Height()};
        FillSpan(context, box, within, PixelOf(context.state.backColor));
    }
    const uint32_t color = PixelOf(context.state.textColor);
    const char* const begin = text.data();
    int64_t pen = x;
    while (!text.empty() && pen < kFarthest) {
        const auto offset = static_cast<int>(text.data() - begin);
        const Glyph& glyph = typeface.GlyphOf(TakeUnit(text));
        const RECT ink = Moved({glyph.left, glyph.top, glyph.left + glyph.width, glyph.top + glyph.height},
                               pen + context.originX, int64_t{y} + context.originY);
        ForEachPart(context, Common(ink, within),
                    [&](const RECT& part) { DrawGlyph(*context.surface, glyph, ink, part, color); });
        const int64_t next = pen + glyph.advance;
        if (font.underline || font.strikeOut || offset == underlined)
            DrawRules(context, {Near(pen), y, Near(next), y}, within, font.underline || offset == underlined,
                      font.strikeOut);
        pen = next;
    }
}

BOOL TextOutA(HDC handle, int x, int y, LPCSTR text, int bytes) {
    const TextArguments arguments(handle, text, bytes);
    if (!arguments.valid) return FALSE;
    DrawTextLine(*arguments.context, x, y, arguments.text);
    return TRUE;
}

BOOL GetTextExtentExPointA(HDC handle, LPCSTR text, int bytes, int most, int* fit, int* widths, SIZE* size) {
    const TextArguments arguments(handle, text, bytes);
    if (!arguments.valid || size == nullptr) return FALSE;
    Typeface& typeface = *arguments.context->state.font->typeface;
    std::string_view rest = arguments.text;
    int64_t width = 0;
    int fitting = 0;
    while (!rest.empty()) {
        const auto unitBytes = static_cast<int>(Cp932UnitBytes(rest));
        const auto offset = static_cast<int>(arguments.text.size() - rest.size());
        width += typeface.GlyphOf(TakeUnit(rest)).advance;
        for (int i = 0; widths != nullptr && i < unitBytes; ++i) widths[offset + i] = Near(width);
        if (width <= most && fitting == offset) fitting += unitBytes;
    }
    if (fit != nullptr) *fit = fitting;
    *size = {Near(width), arguments.text.empty() ? 0 : typeface.Height()};
    return TRUE;
}

BOOL GetTextExtentPoint32A(HDC handle, LPCSTR text, int bytes, SIZE* size) {
    return GetTextExtentExPointA(handle, text, bytes, 0, nullptr, nullptr, size);
}

BOOL GetTextMetricsA(HDC handle, TEXTMETRICA* metrics) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || metrics == nullptr) return FALSE;
    const Font& font = *context->state.font;
    Typeface& typeface = *font.typeface;
    *metrics = {};
    metrics->tmHeight = typeface.Height();
    metrics->tmAscent = typeface.Ascent();
    metrics->tmDescent = typeface.Descent();
    metrics->tmInternalLeading = std::max(0, typeface.Height() - typeface.EmHeight());
    metrics->tmAveCharWidth = typeface.AverageWidth();
    constexpr uint16_t kIdeographicSpace = 0x8140;
    metrics->tmMaxCharWidth =
        std::max(typeface.GlyphOf('W').advance, typeface.GlyphOf(kIdeographicSpace).advance);
    metrics->tmWeight = typeface.Key().weight > 550 ? FW_BOLD : FW_NORMAL;
    metrics->tmDigitizedAspectX = metrics->tmDigitizedAspectY = 96;
    metrics->tmFirstChar = ' ';
    metrics->tmLastChar = 0xFF;
    metrics->tmDefaultChar = '?';
    metrics->tmBreakChar = ' ';
    metrics->tmItalic = typeface.Key().italic ? 1 : 0;
    metrics->tmUnderlined = font.underline ? 1 : 0;
    metrics->tmStruckOut = font.strikeOut ? 1 : 0;
    metrics->tmCharSet = SHIFTJIS_CHARSET;
    return TRUE;
}
