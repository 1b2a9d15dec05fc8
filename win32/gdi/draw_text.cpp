// Texts in a rectangle: lines, alignment, and letters that are underlined for the keyboard.
#include <cstring>
#include <string>

#include "win32/codepage_932.h"
#include "win32/gdi/text.h"
#include "win32/last_error.h"

namespace {

constexpr UINT kOfferedFormats =
    DT_CENTER | DT_RIGHT | DT_VCENTER | DT_WORDBREAK | DT_SINGLELINE | DT_CALCRECT | DT_NOPREFIX;

struct TextLine {
    std::string text;
    int underlined = -1; ///< the byte that the mark stood before
};

// "&x" gives an underlined x, "&&" an ampersand.  An ampersand is no second byte of a double-byte character.
TextLine WithoutMarks(std::string_view text, UINT format) {
    if ((format & DT_NOPREFIX) != 0) return {std::string(text), -1};
    TextLine line;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && i + 1 < text.size()) {
            ++i;
            if (text[i] != '&') line.underlined = static_cast<int>(line.text.size());
        } else if (text[i] == '&') {
            continue;
        }
        line.text += text[i];
    }
    return line;
}

bool MayBreakBetween(std::string_view unit, std::string_view next) {
    if (next == " ") return false; // blanks hang over the end
    return unit == " " || unit.size() == 2 || next.size() == 2;
}

// Bytes of the first line of a paragraph: as many words as fit, but one at least.
size_t FittingBytes(Context& context, std::string_view paragraph, int width) {
    size_t fitting = 0, at = 0;
    while (at < paragraph.size()) {
        const std::string_view unit = paragraph.substr(at, Cp932UnitBytes(paragraph.substr(at)));
        at += unit.size();
        const std::string_view rest = paragraph.substr(at);
        if (!rest.empty() && !MayBreakBetween(unit, rest.substr(0, Cp932UnitBytes(rest)))) continue;
        std::string_view line = paragraph.substr(0, at);
        while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
        if (fitting != 0 && TextWidth(context, line) > width) break;
        fitting = at;
    }
    return fitting;
}

// Takes the text up to the next line end, and the line end.
std::string_view TakeParagraph(std::string_view& text) {
    const size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view paragraph = text.substr(0, end);
    const size_t endBytes = text.substr(end, 2) == "\r\n" ? 2 : text.substr(end, 1).size();
    text.remove_prefix(end + endBytes);
    return paragraph;
}

void AddParagraph(Context& context, std::string_view paragraph, int width, UINT format,
                  std::vector<TextLine>& lines) {
    if ((format & DT_WORDBREAK) == 0 || paragraph.empty()) {
        lines.push_back(WithoutMarks(paragraph, format));
        return;
    }
    while (!paragraph.empty()) {
        const size_t bytes = FittingBytes(context, paragraph, width);
        std::string_view line = paragraph.substr(0, bytes);
        paragraph.remove_prefix(bytes);
        while (!paragraph.empty() && !line.empty() && line.back() == ' ') line.remove_suffix(1);
        lines.push_back(WithoutMarks(line, format));
    }
}

std::vector<TextLine> LinesOf(Context& context, std::string_view text, int width, UINT format) {
    if ((format & DT_SINGLELINE) != 0) return {WithoutMarks(text, format)};
    std::vector<TextLine> lines;
    while (!text.empty()) AddParagraph(context, TakeParagraph(text), width, format, lines);
    return lines;
}

void DrawLines(Context& context, const std::vector<TextLine>& lines, const RECT& rectangle, int top,
               UINT format) {
    const int lineHeight = context.state.font->typeface->Height();
    for (const TextLine& line : lines) {
        int64_t x = rectangle.left;
        const int64_t room = int64_t{rectangle.right} - rectangle.left - TextWidth(context, line.text);
        if ((format & DT_CENTER) != 0) {
            x += room / 2;
        } else if ((format & DT_RIGHT) != 0) {
            x += room;
        }
        DrawTextLine(context, Near(x), top, line.text, &rectangle, line.underlined);
        top = Near(int64_t{top} + lineHeight);
    }
}

int DrawTextIn(Context& context, std::string_view text, RECT& rectangle, UINT format) {
    const int width = Near(int64_t{rectangle.right} - rectangle.left);
    const int lineHeight = context.state.font->typeface->Height();
    if (text.empty()) {
        // A line that isn't there has a height all the same, but only a single one makes room for it.
        if ((format & DT_CALCRECT) != 0) {
            rectangle.right = rectangle.left;
            rectangle.bottom = rectangle.top + ((format & DT_SINGLELINE) != 0 ? lineHeight : 0);
        }
        return lineHeight;
    }
    const std::vector<TextLine> lines = LinesOf(context, text, width, format);
    const int height = Near(static_cast<int64_t>(lines.size()) * lineHeight);
    // The height that is told reaches from the rectangle's top to the end of a text that lies in its middle.
    int offset = 0;
    if ((format & DT_SINGLELINE) != 0 && (format & DT_VCENTER) != 0)
        offset = Near((int64_t{rectangle.bottom} - rectangle.top) / 2 - height / 2);
    if ((format & DT_CALCRECT) == 0) {
        DrawLines(context, lines, rectangle, Near(int64_t{rectangle.top} + offset), format);
        return height + offset;
    }
    int widest = 0;
    for (const TextLine& line : lines) widest = std::max(widest, TextWidth(context, line.text));
    rectangle.right = Near(int64_t{rectangle.left} + widest);
    rectangle.bottom = Near(int64_t{rectangle.top} + height + offset);
    return height + offset;
}

} // namespace

int DrawTextA(HDC handle, LPCSTR text, int bytes, RECT* rectangle, UINT format) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || text == nullptr || rectangle == nullptr || bytes < -1) return 0;
    if ((format & ~kOfferedFormats) != 0) {
        RefuseLoudly("DrawTextA: this format");
        return 0;
    }
    const size_t count = bytes == -1 ? std::strlen(text) : static_cast<size_t>(bytes);
    return DrawTextIn(*context, {text, count}, *rectangle, format);
}
