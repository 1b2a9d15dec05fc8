#include "win32/controls/list_control.h"

#include <algorithm>
#include <utility>

#include "win32/codepage_932.h"
#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"

namespace {

constexpr int kTextMargin = 3;

int Count(const ListData& data) {
    return static_cast<int>(data.items.size());
}

int VisibleItems(HWND window, const ListData& data) {
    return std::max<int>((ClientRectangle(window).bottom - 2) / data.itemHeight, 1);
}

int LastTop(HWND window, const ListData& data) {
    return std::max(Count(data) - VisibleItems(window, data), 0);
}

// The items' area: what border and scroll bar leave.
RECT ItemArea(HWND window, const ListData& data) {
    RECT area = ClientRectangle(window);
    InflateRect(&area, -1, -1);
    if (Count(data) > VisibleItems(window, data)) area.right -= GetSystemMetrics(SM_CXVSCROLL);
    return area;
}

RECT ItemRectangle(HWND window, const ListData& data, int item) {
    const RECT area = ItemArea(window, data);
    const int top = area.top + (item - data.top) * data.itemHeight;
    return {area.left, top, area.right, top + data.itemHeight};
}

int ItemAt(HWND window, const ListData& data, POINT point) {
    const RECT area = ItemArea(window, data);
    if (!PtInRect(&area, point)) return -1;
    const int item = data.top + (point.y - area.top) / data.itemHeight;
    return item < Count(data) ? item : -1;
}

void UpdateBar(HWND window, ListData& data) {
    // A popup is put in order when it opens.
    if (data.isPopup && !IsWindowVisible(window)) return;
    const RECT client = ClientRectangle(window);
    const int visible = VisibleItems(window, data), width = GetSystemMetrics(SM_CXVSCROLL);
    data.top = std::clamp(data.top, 0, LastTop(window, data));
    SCROLLINFO bar = {sizeof bar,
                      SIF_RANGE | SIF_PAGE | SIF_POS,
                      0,
                      std::max(Count(data) - 1, 0),
                      static_cast<UINT>(visible),
                      data.top,
                      0};
    SetScrollInfo(data.scrollBar, SB_CTL, &bar, TRUE);
    MoveWindow(data.scrollBar, client.right - 1 - width, 1, width, client.bottom - 2, TRUE);
    ShowWindow(data.scrollBar, Count(data) > visible ? SW_SHOWNA : SW_HIDE);
    Redraw(window);
}

void ScrollTo(HWND window, ListData& data, int top) {
    top = std::clamp(top, 0, LastTop(window, data));
    if (top == data.top) return;
    data.top = top;
    UpdateBar(window, data);
}

void ScrollByBar(HWND window, ListData& data, int code, int position) {
    const int page = VisibleItems(window, data);
    switch (code) {
        case SB_LINEUP:
            ScrollTo(window, data, data.top - 1);
            break;
        case SB_LINEDOWN:
            ScrollTo(window, data, data.top + 1);
            break;
        case SB_PAGEUP:
            ScrollTo(window, data, data.top - page);
            break;
        case SB_PAGEDOWN:
            ScrollTo(window, data, data.top + page);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            ScrollTo(window, data, position);
            break;
        case SB_ENDSCROLL:
            // The bar had the pointer for as long as it was held.
            data.usesBar = false;
            if (data.isPopup && IsWindowVisible(window)) SetCapture(window);
            break;
        default:
            break;
    }
}

void DrawItem(const ListData& data, HDC context, const RECT& place, int item, bool focused) {
    const bool selected = item == data.selected;
    if (data.ownerDrawn) {
        const ListItemDraw draw = {context, place, item, selected};
        SendMessageA(data.owner, kDrawListItem, reinterpret_cast<WPARAM>(&draw), 0);
        return;
    }
    const std::string& text = data.items[static_cast<size_t>(item)];
    const COLORREF color = SetTextColor(context, GetSysColor(COLOR_HIGHLIGHTTEXT));
    if (selected)
        FillRect(context, &place, GetSysColorBrush(COLOR_HIGHLIGHT));
    else
        SetTextColor(context, color);
    RECT line = place;
    line.left += kTextMargin;
    DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &line,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SetTextColor(context, color);
    if (selected && focused) DrawFocusRect(context, &place);
}

void Paint(HWND window, const ListData& data, WPARAM given) {
    const PaintContext paint(window, given);
    const HDC context = paint.context();
    const int saved = SaveDC(context);
    {
        const Selected font(context, data.font);
        const RECT client = ClientRectangle(window), area = ItemArea(window, data);
        FillRect(context, &client, ControlColors(window, data.owner, WM_CTLCOLORLISTBOX, context));
        DrawBorder(context, client, data.isPopup ? COLOR_WINDOWFRAME : COLOR_BTNSHADOW);
        IntersectClipRect(context, area.left, area.top, area.right, area.bottom);
        SetBkMode(context, TRANSPARENT);
        for (int item = data.top; item < Count(data); ++item) {
            const RECT place = ItemRectangle(window, data, item);
            if (place.top >= area.bottom) break;
            DrawItem(data, context, place, item, data.isFocused);
        }
    }
    RestoreDC(context, saved);
}

void Tell(HWND window, const ListData& data, int code) {
    SendMessageA(data.owner, WM_COMMAND, PackWParam(GetDlgCtrlID(window), code),
                 reinterpret_cast<LPARAM>(window));
}

void Hover(HWND window, ListData& data, POINT point) {
    if (data.usesBar || (!data.isPopup && !data.isPressed)) return;
    const int item = ItemAt(window, data, point);
    if (item < 0) return;
    data.hasEntered = true;
    if (item != data.selected) SelectListItem(window, item);
}

// A press on the scroll bar comes here, since the popup has the pointer: it goes on to the bar.
bool PressBar(HWND window, ListData& data, UINT message, WPARAM keys, POINT point) {
    RECT bar = {};
    GetWindowRect(data.scrollBar, &bar);
    ClientToScreen(window, &point);
    if (!IsWindowVisible(data.scrollBar) || !PtInRect(&bar, point)) return false;
    data.usesBar = true;
    ScreenToClient(data.scrollBar, &point);
    SendMessageA(data.scrollBar, message, keys, PackLParam(point.x, point.y));
    return true;
}

void Press(HWND window, ListData& data, UINT message, WPARAM keys, POINT point) {
    const RECT client = ClientRectangle(window);
    if (data.isPopup && !PtInRect(&client, point)) {
        Tell(window, data, kListCancelled);
        return;
    }
    if (data.isPopup && PressBar(window, data, message, keys, point)) return;
    data.isPressed = true;
    if (!data.isPopup) {
        SetFocus(window);
        SetCapture(window);
    }
    const int item = ItemAt(window, data, point);
    if (item < 0) return;
    data.hasEntered = true;
    SelectListItem(window, item);
    if (!data.isPopup) Tell(window, data, message == WM_LBUTTONDBLCLK ? kListDoubleClicked : kListSelected);
}

void Release(HWND window, ListData& data, POINT point) {
    const bool picks =
        data.isPopup && (data.isPressed || data.hasEntered) && ItemAt(window, data, point) >= 0;
    data.isPressed = false;
    if (!data.isPopup) {
        if (GetCapture() == window) ReleaseCapture();
        return;
    }
    if (picks) Tell(window, data, kListSelected);
}

void TakeKey(HWND window, const ListData& data, WPARAM key) {
    if (key == VK_LEFT) Tell(window, data, kListLeft);
    if (key == VK_RIGHT && data.selected >= 0) Tell(window, data, kListDoubleClicked);
    const int item = ItemOfKey(window, key);
    if (item < 0 || item == data.selected) return;
    SelectListItem(window, item);
    Tell(window, data, kListSelected);
}

// A combo box gives its popup the items' height itself.
void SetFont(HWND window, ListData& data, HFONT font) {
    data.font = font;
    if (data.isPopup) return;
    const WindowContext context(window);
    const Selected selected(context.context(), font);
    TEXTMETRICA metrics = {};
    GetTextMetricsA(context.context(), &metrics);
    SetListItemHeight(window, metrics.tmHeight + 1);
}

void Start(HWND window, ListData& data, const CREATESTRUCTA& creation) {
    data.owner =
        creation.lpCreateParams != nullptr ? static_cast<HWND>(creation.lpCreateParams) : creation.hwndParent;
    data.isPopup = (creation.style & static_cast<LONG>(WS_CHILD)) == 0;
    data.scrollBar = CreateWindowExA(0, kScrollBarClass, "", WS_CHILD | SBS_VERT, 0, 0, 0, 0, window, nullptr,
                                     creation.hInstance, nullptr);
}

} // namespace

HWND NewList(HWND owner, HWND parent, bool popup, int id) {
    constexpr DWORD kPopupExtended = WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;
    const DWORD style =
        popup ? WS_POPUP | WS_CLIPCHILDREN : WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_GROUP | WS_CLIPCHILDREN;
    const HMENU number = popup ? nullptr : reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
    return CreateWindowExA(popup ? kPopupExtended : 0, kListClass, "", style, 0, 0, 0, 0, parent, number,
                           reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(owner, GWLP_HINSTANCE)), owner);
}

void DrawListByOwner(HWND list) {
    auto* data = DataOf<ListData>(list);
    if (data != nullptr) data->ownerDrawn = true;
}

void InsertListItem(HWND list, int at, const char* text) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->items.insert(data->items.begin() + at, text);
    if (data->selected >= at) ++data->selected;
    UpdateBar(list, *data);
}

void DeleteListItem(HWND list, int at) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->items.erase(data->items.begin() + at);
    if (data->selected == at)
        data->selected = -1;
    else if (data->selected > at)
        --data->selected;
    UpdateBar(list, *data);
}

void SetListItems(HWND list, std::deque<std::string> items) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->items = std::move(items);
    data->selected = -1;
    data->top = 0;
    UpdateBar(list, *data);
}

void SelectListItem(HWND list, int item) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->selected = item;
    const int visible = VisibleItems(list, *data);
    if (item >= 0 && item < data->top) ScrollTo(list, *data, item);
    if (item >= data->top + visible) ScrollTo(list, *data, item - visible + 1);
    Redraw(list);
}

void SetListItemHeight(HWND list, int height) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->itemHeight = std::max(height, 1);
    UpdateBar(list, *data);
}

int FindListItem(const ListData& list, int after, const std::string& text, bool exact) {
    const int count = Count(list);
    const auto fold = [](std::string word) {
        // The second byte of a double-byte character may look like a letter.
        for (size_t i = 0; i < word.size(); i += Cp932UnitBytes(std::string_view(word).substr(i)))
            if (word[i] >= 'A' && word[i] <= 'Z') word[i] = static_cast<char>(word[i] - 'A' + 'a');
        return word;
    };
    const std::string wanted = fold(text);
    for (int step = 1; step <= count; ++step) {
        const int item = (std::clamp(after, -1, count - 1) + step) % count;
        std::string word = fold(list.items[static_cast<size_t>(item)]);
        if (!exact) word.resize(std::min(word.size(), wanted.size()));
        if (word == wanted) return item;
    }
    return -1;
}

int ItemOfKey(HWND list, WPARAM key) {
    const auto* data = DataOf<ListData>(list);
    if (data == nullptr || data->items.empty()) return -1;
    const int last = Count(*data) - 1, page = std::max(VisibleItems(list, *data) - 1, 1);
    switch (key) {
        case VK_UP:
            return std::max(data->selected - 1, 0);
        case VK_DOWN:
            return std::min(data->selected + 1, last);
        case VK_PRIOR:
            return std::max(data->selected - page, 0);
        case VK_NEXT:
            return std::min(std::max(data->selected, 0) + page, last);
        case VK_HOME:
            return 0;
        case VK_END:
            return last;
        default:
            return -1;
    }
}

void ShowList(HWND list, const RECT& place) {
    auto* data = DataOf<ListData>(list);
    if (data == nullptr) return;
    data->hasEntered = data->isPressed = data->usesBar = false;
    SetWindowPos(list, HWND_TOPMOST, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    data->top = std::max(data->selected, 0);
    UpdateBar(list, *data);
    SetCapture(list);
}

void HideList(HWND list) {
    if (GetCapture() == list) ReleaseCapture();
    ShowWindow(list, SW_HIDE);
}

LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<ListData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
        case WM_CREATE:
            Start(window, *data, *reinterpret_cast<const CREATESTRUCTA*>(lParam));
            return 0;
        case WM_PAINT:
            Paint(window, *data, wParam);
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEACTIVATE:
            return data->isPopup ? MA_NOACTIVATE : MA_ACTIVATE;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_SETFONT:
            SetFont(window, *data, FontOf(wParam));
            return 0;
        case WM_SIZE:
            UpdateBar(window, *data);
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            data->isFocused = message == WM_SETFOCUS;
            Redraw(window);
            return 0;
        case WM_MOUSEMOVE:
            Hover(window, *data, PointOf(lParam));
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            Press(window, *data, message, wParam, PointOf(lParam));
            return 0;
        case WM_LBUTTONUP:
            Release(window, *data, PointOf(lParam));
            return 0;
        case WM_MOUSEWHEEL:
            ScrollTo(window, *data, data->top - 3 * HighPart(static_cast<LPARAM>(wParam)) / WHEEL_DELTA);
            return 0;
        case WM_VSCROLL:
            ScrollByBar(window, *data, LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_KEYDOWN:
            TakeKey(window, *data, wParam);
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
