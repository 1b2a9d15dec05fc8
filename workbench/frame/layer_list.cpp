#include "workbench/frame/layer_list.h"

#include <algorithm>

#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr char kLayersClass[] = "WorkbenchLayers";
constexpr int kWheelRows = 3;

/// An eye of two arcs, as rows of pixels around (x, y).
void DrawEye(HDC context, int x, int y, COLORREF color) {
    constexpr struct {
        int dy, from, to;
    } kRows[] = {{-3, -2, 3}, {-2, -4, -2}, {-2, 3, 5},  {-1, -5, -3}, {-1, 4, 6},
                 {0, -6, -4}, {0, 5, 7},    {1, -5, -3}, {1, 4, 6},    {2, -4, -2},
                 {2, 3, 5},   {3, -2, 3},   {-1, -1, 2}, {0, -1, 2},   {1, -1, 2}};
    for (const auto& row : kRows)
        FillColor(context, {x + row.from, y + row.dy, x + row.to, y + row.dy + 1}, color);
}

void DrawLock(HDC context, int x, int y, COLORREF color) {
    FillColor(context, {x - 4, y - 1, x + 5, y + 6}, color);
    FrameColor(context, {x - 3, y - 6, x + 4, y + 1}, color);
    FrameColor(context, {x - 2, y - 5, x + 3, y}, color);
}

/// A place to click where nothing is set.
void DrawDot(HDC context, int x, int y, COLORREF color) {
    FillColor(context, {x, y, x + 2, y + 2}, color);
}

} // namespace

LayerList::LayerList(Host& host, HWND owner, const RECT& place) : host_(host) {
    RegisterFrameClass(kLayersClass, Procedure);
    CreateWindowExA(WS_EX_TOOLWINDOW, kLayersClass, "Layers", WS_POPUP | WS_CAPTION | WS_SYSMENU, place.left,
                    place.top, place.right - place.left, place.bottom - place.top, owner, nullptr, nullptr,
                    this);
}

LayerList::~LayerList() {
    if (window_) DestroyWindow(window_);
}

void LayerList::Show(bool show) {
    ShowWindow(window_, show ? SW_SHOWNA : SW_HIDE);
}

void LayerList::Refresh() {
    ScrollTo(firstRow_);
    InvalidateRect(window_, nullptr, FALSE);
}

void LayerList::ScrollTo(int firstRow) {
    RECT client{};
    GetClientRect(window_, &client);
    const Document* document = host_.front();
    const int rows = document ? static_cast<int>(document->LayerCount()) : 0;
    firstRow_ = std::clamp(firstRow, 0, std::max(0, rows - static_cast<int>(client.bottom) / kLayerRow));
    InvalidateRect(window_, nullptr, FALSE);
}

void LayerList::Paint() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    const FrameColors colors = ColorsOf(host_.theme());
    RECT client;
    GetClientRect(window_, &client);
    FillColor(context, client, colors.face);
    Document* document = host_.front();
    const size_t count = document ? document->LayerCount() : 0;
    int top = 0;
    for (size_t i = static_cast<size_t>(firstRow_); i < count && top < client.bottom; ++i, top += kLayerRow) {
        const Layer& layer = document->LayerAt(i);
        const RECT row{0, top, client.right, top + kLayerRow};
        const bool current = &layer == &document->CurrentLayer();
        if (current) FillColor(context, row, colors.highlight);
        const COLORREF text = current ? colors.highlightText : colors.text;
        const COLORREF faint = current ? colors.highlightText : colors.disabledText;
        const int middle = top + kLayerRow / 2;
        if (layer.visible) {
            DrawEye(context, kLayerEyeWidth / 2, middle, text);
        } else {
            DrawDot(context, kLayerEyeWidth / 2, middle, faint);
        }
        if (layer.locked) {
            DrawLock(context, kLayerEyeWidth + kLayerLockWidth / 2, middle, text);
        } else {
            DrawDot(context, kLayerEyeWidth + kLayerLockWidth / 2, middle, faint);
        }
        DrawLine(context, row, kLayerEyeWidth + kLayerLockWidth + 4, layer.title,
                 layer.visible ? text : faint);
        FillColor(context, {0, row.bottom - 1, client.right, row.bottom}, colors.strip);
    }
    EndPaint(window_, &paint);
}

void LayerList::Press(POINT point) {
    Document* document = host_.front();
    const size_t row = static_cast<size_t>(firstRow_ + point.y / kLayerRow);
    if (!document || point.y < 0 || row >= document->LayerCount()) return;
    if (point.x < kLayerEyeWidth) {
        if (flip) flip(row, &Layer::visible);
    } else if (point.x < kLayerEyeWidth + kLayerLockWidth) {
        if (flip) flip(row, &Layer::locked);
    } else {
        document->SetCurrentLayer(row);
    }
    Refresh();
}

LRESULT LayerList::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_LBUTTONDOWN:
            Press({static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))});
            return 0;
        case WM_MOUSEWHEEL:
            ScrollTo(firstRow_ - kWheelRows * (static_cast<SHORT>(HIWORD(wParam)) / WHEEL_DELTA));
            return 0;
        case WM_CLOSE:
            Show(false);
            return 0;
        case WM_DESTROY:
            SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcA(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK LayerList::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    LayerList* list = ObjectOf<LayerList>(window, message, lParam);
    if (!list) return DefWindowProcA(window, message, wParam, lParam);
    list->window_ = window;
    return list->Handle(message, wParam, lParam);
}

} // namespace workbench
