#include "win32/controls/edit_view.h"

#include <algorithm>
#include <string_view>

#include "win32/controls/control_support.h"

namespace {

constexpr int kMargin = 2; ///< pixels left and right of the text

/// Measures with the control's font.
class Ruler : public TextFit {
public:
    Ruler(HWND window, const EditData& data, int width)
        : context_(window), font_(context_.context(), data.font), width_(width) {}

    size_t BytesThatFit(std::string_view text) const override {
        int fit = 0;
        SIZE size = {};
        GetTextExtentExPointA(context_.context(), text.data(), static_cast<int>(text.size()), width_, &fit,
                              nullptr, &size);
        return static_cast<size_t>(std::max(fit, 0));
    }

    int WidthOf(std::string_view text) const {
        SIZE size = {};
        if (!text.empty())
            GetTextExtentPoint32A(context_.context(), text.data(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

    int Height() const {
        TEXTMETRICA metrics = {};
        GetTextMetricsA(context_.context(), &metrics);
        return std::max<int>(metrics.tmHeight, 1);
    }

private:
    WindowContext context_;
    Selected font_;
    int width_;
};

std::string_view LineText(const EditData& data, size_t line) {
    const EditLine& ends = data.lines[line];
    return std::string_view(data.edit.text).substr(ends.start, ends.end - ends.start);
}

bool Wraps(HWND window) {
    return IsMultiline(window) && (StyleOf(window) & ES_AUTOHSCROLL) == 0;
}

// One run of characters of the same colours.
int DrawRun(HDC context, int x, int y, int height, std::string_view text, bool selected, COLORREF color) {
    if (text.empty()) return x;
    SIZE size = {};
    GetTextExtentPoint32A(context, text.data(), static_cast<int>(text.size()), &size);
    if (selected) {
        const RECT back = {x, y, x + size.cx, y + height};
        FillRect(context, &back, GetSysColorBrush(COLOR_HIGHLIGHT));
    }
    SetTextColor(context, selected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : color);
    TextOutA(context, x, y, text.data(), static_cast<int>(text.size()));
    return x + size.cx;
}

void DrawLine(HDC context, const EditData& data, size_t line, int x, int y, int height, COLORREF color) {
    const EditLine& ends = data.lines[line];
    const std::string_view text = data.edit.text;
    const size_t from =
        data.isFocused ? std::clamp(SelectionStart(data.edit), ends.start, ends.end) : ends.end;
    const size_t to = data.isFocused ? std::clamp(SelectionEnd(data.edit), from, ends.end) : ends.end;
    x = DrawRun(context, x, y, height, text.substr(ends.start, from - ends.start), false, color);
    x = DrawRun(context, x, y, height, text.substr(from, to - from), true, color);
    DrawRun(context, x, y, height, text.substr(to, ends.end - to), false, color);
}

} // namespace

bool IsMultiline(HWND window) {
    return (StyleOf(window) & ES_MULTILINE) != 0;
}

RECT TextRectangle(HWND window) {
    RECT place = ClientRectangle(window);
    const int border = OwnBorder(window);
    const int gap = IsPartOfCombo(window) ? 0 : 1;
    InflateRect(&place, -border - kMargin, -border - gap);
    place.right = std::max(place.right, place.left);
    place.bottom = std::max(place.bottom, place.top);
    if (IsMultiline(window)) return place;
    // One line stands in the middle.
    const auto* data = DataOf<EditData>(window);
    const int spare = place.bottom - place.top - (data != nullptr ? LineHeight(window, *data) : 0);
    place.top += std::max(spare / 2, 0);
    return place;
}

int LineHeight(HWND window, const EditData& data) {
    return Ruler(window, data, 0).Height();
}

size_t VisibleLines(HWND window, const EditData& data) {
    const RECT place = TextRectangle(window);
    return static_cast<size_t>(std::max<int>((place.bottom - place.top) / LineHeight(window, data), 1));
}

bool TextFitsWindow(HWND window, const EditData& data) {
    const DWORD style = StyleOf(window);
    if (IsMultiline(window))
        return (style & ES_AUTOVSCROLL) != 0 || data.lines.size() <= VisibleLines(window, data);
    const RECT place = TextRectangle(window);
    return (style & ES_AUTOHSCROLL) != 0 ||
           Ruler(window, data, 0).WidthOf(data.edit.text) <= place.right - place.left;
}

void LayOut(HWND window, EditData& data) {
    const RECT place = TextRectangle(window);
    if (Wraps(window)) {
        const Ruler ruler(window, data, place.right - place.left);
        data.lines = BreakLines(data.edit.text, &ruler);
    } else if (IsMultiline(window)) {
        data.lines = BreakLines(data.edit.text, nullptr);
    } else {
        data.lines = {{0, data.edit.text.size()}};
    }
    data.firstLine = std::min(data.firstLine, data.lines.size() - 1);
}

void ShowCaretPlace(HWND window, EditData& data) {
    const size_t line = LineOfPlace(data.lines, data.edit.caret);
    const size_t visible = VisibleLines(window, data);
    if (line < data.firstLine) data.firstLine = line;
    if (line >= data.firstLine + visible) data.firstLine = line + 1 - visible;
    if (Wraps(window)) return;

    const RECT place = TextRectangle(window);
    const int width = place.right - place.left;
    const Ruler ruler(window, data, 0);
    const size_t start = data.lines[line].start;
    const int x = ruler.WidthOf(std::string_view(data.edit.text).substr(start, data.edit.caret - start));
    // A jump of a third of the width, so that typing doesn't scroll with each letter.
    if (x < data.offsetX) data.offsetX = std::max(x - width / 3, 0);
    if (x >= data.offsetX + width) data.offsetX = x - width + std::max(width / 3, 1);
    if (ruler.WidthOf(LineText(data, line)) < width) data.offsetX = 0;
}

POINT PointOfPlace(HWND window, const EditData& data, size_t place) {
    const RECT text = TextRectangle(window);
    const size_t line = LineOfPlace(data.lines, place);
    const EditLine& ends = data.lines[line];
    const Ruler ruler(window, data, 0);
    const size_t last = std::min(place, ends.end);
    const int x = ruler.WidthOf(std::string_view(data.edit.text).substr(ends.start, last - ends.start));
    const int row = static_cast<int>(line) - static_cast<int>(data.firstLine);
    return {text.left + x - data.offsetX, text.top + row * ruler.Height()};
}

size_t PlaceAtPoint(HWND window, const EditData& data, POINT point) {
    const RECT text = TextRectangle(window);
    const Ruler ruler(window, data, 0);
    int row = static_cast<int>(data.firstLine);
    if (IsMultiline(window)) {
        const int down = point.y - text.top, height = ruler.Height();
        row += down >= 0 ? down / height : -((height - 1 - down) / height);
    }
    const auto line = static_cast<size_t>(std::clamp(row, 0, static_cast<int>(data.lines.size()) - 1));
    const EditLine& ends = data.lines[line];
    const std::string_view shown = LineText(data, line);
    const int x = point.x - text.left + data.offsetX;
    size_t place = 0;
    int left = 0;
    while (place < shown.size()) {
        const size_t next = NextPlace(shown, place);
        const int right = ruler.WidthOf(shown.substr(0, next));
        if (x < (left + right + 1) / 2) break;
        place = next;
        left = right;
    }
    // The end of a line that goes on below is the next one's start: the place before it is the last here.
    const bool goesOn = line + 1 < data.lines.size() && data.lines[line + 1].start == ends.end;
    if (goesOn && place == shown.size()) place = PreviousPlace(shown, place);
    return ends.start + place;
}

void PaintEdit(HWND window, const EditData& data, HDC context) {
    const int saved = SaveDC(context);
    {
        const Selected font(context, data.font);
        const RECT client = ClientRectangle(window);
        const UINT colors = IsWindowEnabled(window) ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC;
        const HBRUSH back = ControlColors(window, GetParent(window), colors, context);
        FillRect(context, &client, back);
        if (OwnBorder(window) != 0) DrawBorder(context, client, COLOR_BTNSHADOW);
        const COLORREF own = SetTextColor(context, 0);
        const COLORREF color = IsWindowEnabled(window) ? own : GetSysColor(COLOR_GRAYTEXT);
        SetBkMode(context, TRANSPARENT);
        const RECT place = TextRectangle(window);
        IntersectClipRect(context, place.left, place.top, place.right + 1, place.bottom);
        const int height = LineHeight(window, data);
        int y = place.top;
        for (size_t line = data.firstLine; line < data.lines.size() && y < place.bottom; ++line, y += height)
            DrawLine(context, data, line, place.left - data.offsetX, y, height, color);
        if (data.isFocused) {
            const POINT caret = PointOfPlace(window, data, data.edit.caret);
            const RECT stroke = {caret.x, caret.y, caret.x + 1, caret.y + height};
            FillRect(context, &stroke, GetSysColorBrush(COLOR_WINDOWTEXT));
        }
    }
    RestoreDC(context, saved);
}
