#include "workbench/frame/canvas.h"

#include <algorithm>
#include <cstdlib>

#include "workbench/frame/frame_looks.h"
#include "workbench/frame/progress_window.h"

namespace workbench {

namespace {

constexpr char kCanvasClass[] = "WorkbenchCanvas";
constexpr int kReach = 3;         ///< pixels around the pointer in which art is hit
constexpr int kDragThreshold = 3; ///< pixels before a press becomes a band
constexpr int kWheelStep = 48;
constexpr int kHandleReach = 2;
constexpr LONG kSmallestWithCorners = 24; ///< pixels

bool IsDown(int key) {
    return (GetKeyState(key) & 0x8000) != 0;
}

} // namespace

Canvas::Canvas(Host& host, HWND parent, const CanvasPictures& pictures) : host_(host), pictures_(pictures) {
    RegisterFrameClass(kCanvasClass, Procedure);
    CreateWindowExA(0, kCanvasClass, "", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent, nullptr, nullptr, this);
}

Canvas::~Canvas() {
    if (window_) DestroyWindow(window_);
}

SIZE Canvas::Size() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {client.right, client.bottom};
}

void Canvas::Move(const RECT& place) {
    SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (Document* document = host_.front()) {
        View& view = document->view();
        SetView(view, {view.bounds.left, view.bounds.top}, view.zoom, Size());
    }
    ViewChanged();
}

void Canvas::DocumentChanged() {
    stale_ = true;
    InvalidateRect(window_, nullptr, FALSE);
}

void Canvas::SelectionChanged() {
    InvalidateRect(window_, nullptr, FALSE);
}

void Canvas::ViewChanged() {
    DocumentChanged();
    if (viewChanged) viewChanged();
}

void Canvas::ZoomTo(double zoom) {
    const SIZE size = Size();
    ZoomAboutPixel(zoom, {size.cx / 2, size.cy / 2});
}

void Canvas::ZoomAboutPixel(double zoom, POINT pixel) {
    Document* document = host_.front();
    if (!document) return;
    ZoomAbout(document->view(), zoom, pixel, Size());
    ScrollBy(0, 0);
}

void Canvas::ScrollBy(double dx, double dy) {
    Document* document = host_.front();
    if (!document) return;
    Scroll(document->view(), WorldOf(UsablePage(*document)), dx, dy, Size());
    ViewChanged();
}

void Canvas::ShowWholePage() {
    Document* document = host_.front();
    if (!document) return;
    ShowPage(document->view(), UsablePage(*document), Size());
    ViewChanged();
}

// Painting

void Canvas::DrawPicture(const Document& document) {
    const SIZE size = Size();
    pixelsSize_ = size;
    pixels_.assign(static_cast<size_t>(size.cx) * static_cast<size_t>(size.cy), 0x00FFFFFF);
    if (pixels_.empty()) return;
    ProgressWindow progress(window_, "Drawing " + document.title);
    if (pictures_.draw) {
        pictures_.draw(document, document.view(), size, pixels_.data(),
                       [&](size_t done, size_t of) { progress.Show(done, of); });
    }
    stale_ = false;
}

void Canvas::PaintSelection(HDC context, Document& document) {
    const COLORREF color = GetSysColor(COLOR_HIGHLIGHT);
    for (const Art* art : SelectedArt(document)) {
        HostRect bounds;
        if (!document.Bounds(*art, &bounds)) continue;
        const RECT frame = PixelsOf(document.view(), bounds);
        FrameColor(context, frame, color);
        // On what is small the corners would hide more than they show.
        if (std::min(frame.right - frame.left, frame.bottom - frame.top) < kSmallestWithCorners) continue;
        for (const LONG x : {frame.left, frame.right - 1}) {
            for (const LONG y : {frame.top, frame.bottom - 1}) {
                FillColor(context,
                          {x - kHandleReach, y - kHandleReach, x + kHandleReach + 1, y + kHandleReach + 1},
                          color);
            }
        }
    }
}

void Canvas::Paint() {
    Document* document = host_.front();
    if (document && stale_) DrawPicture(*document);
    // A part of the band that is painted over would be inverted once more than the rest.
    const bool band = bandShown_;
    if (band) InvertBand();
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    RECT client;
    GetClientRect(window_, &client);
    if (document && !pixels_.empty()) {
        BITMAPINFO information{};
        information.bmiHeader.biSize = sizeof information.bmiHeader;
        information.bmiHeader.biWidth = pixelsSize_.cx;
        information.bmiHeader.biHeight = -pixelsSize_.cy;
        information.bmiHeader.biPlanes = 1;
        information.bmiHeader.biBitCount = 32;
        information.bmiHeader.biCompression = BI_RGB;
        SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(pixelsSize_.cx),
                          static_cast<DWORD>(pixelsSize_.cy), 0, 0, 0, static_cast<UINT>(pixelsSize_.cy),
                          pixels_.data(), &information, DIB_RGB_COLORS);
        PaintSelection(context, *document);
    } else {
        FillColor(context, client, ColorsOf(host_.theme()).strip);
    }
    EndPaint(window_, &paint);
    if (band) InvertBand();
}

void Canvas::InvertBand() {
    const HDC context = GetDC(window_);
    const HPEN pen = CreatePen(PS_SOLID, 0, RGB(0, 0, 0));
    const HGDIOBJ oldPen = SelectObject(context, pen);
    const int oldOperation = SetROP2(context, R2_NOT);
    MoveToEx(context, handStart_.x, handStart_.y, nullptr);
    LineTo(context, handLast_.x, handStart_.y);
    LineTo(context, handLast_.x, handLast_.y);
    LineTo(context, handStart_.x, handLast_.y);
    LineTo(context, handStart_.x, handStart_.y);
    SetROP2(context, oldOperation);
    SelectObject(context, oldPen);
    DeleteObject(pen);
    ReleaseDC(window_, context);
    bandShown_ = !bandShown_;
}

// The hands

void Canvas::Press(POINT point, bool shift) {
    SetFocus(window_);
    Document* document = host_.front();
    if (!document) return;
    handStart_ = handLast_ = point;
    if (IsDown(VK_SPACE)) {
        hand_ = Hand::kPan;
    } else if (Art* art = ArtAtPoint(*document, ArtPointOf(document->view(), point),
                                     kReach / document->view().zoom, pictures_.paintsAt)) {
        const bool select = !shift || !art->selected;
        if (!shift) document->SelectNone();
        document->Select(*art, select);
        if (selectionChanged) selectionChanged();
    } else {
        hand_ = Hand::kBand;
    }
    if (hand_ != Hand::kNone) SetCapture(window_);
}

void Canvas::Drag(POINT point) {
    if (hand_ == Hand::kPan) {
        ScrollBy(handLast_.x - point.x, handLast_.y - point.y);
        handLast_ = point;
    } else if (hand_ == Hand::kBand) {
        const bool moved = std::abs(point.x - handStart_.x) >= kDragThreshold ||
                           std::abs(point.y - handStart_.y) >= kDragThreshold;
        if (!bandShown_ && !moved) return;
        if (bandShown_) InvertBand();
        handLast_ = point;
        InvertBand();
    }
}

void Canvas::Release(POINT point, bool shift) {
    const Hand hand = hand_;
    Drag(point);
    const bool banded = bandShown_;
    EndHand();
    Document* document = host_.front();
    if (hand != Hand::kBand || !document) return;
    if (!shift) document->SelectNone();
    if (banded) {
        const HostPoint a = ArtPointOf(document->view(), handStart_);
        const HostPoint b = ArtPointOf(document->view(), point);
        const HostRect band{std::min(a.x, b.x), std::max(a.y, b.y), std::max(a.x, b.x), std::min(a.y, b.y)};
        for (Art* art : ArtInBand(*document, band)) document->Select(*art, true);
    }
    if (selectionChanged) selectionChanged();
}

void Canvas::EndHand() {
    if (bandShown_) InvertBand();
    hand_ = Hand::kNone;
    if (GetCapture() == window_) ReleaseCapture();
}

void Canvas::Wheel(WPARAM wParam, LPARAM lParam) {
    Document* document = host_.front();
    if (!document) return;
    const int steps = static_cast<SHORT>(HIWORD(wParam)) / WHEEL_DELTA;
    if ((LOWORD(wParam) & MK_CONTROL) != 0) {
        POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
        ScreenToClient(window_, &point);
        double zoom = document->view().zoom;
        for (int i = 0; i < std::abs(steps); ++i) zoom = NextZoom(zoom, steps > 0);
        ZoomAboutPixel(zoom, point);
    } else if ((LOWORD(wParam) & MK_SHIFT) != 0) {
        ScrollBy(-steps * kWheelStep, 0);
    } else {
        ScrollBy(0, -steps * kWheelStep);
    }
}

LRESULT Canvas::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_LBUTTONDOWN:
            Press(point, (wParam & MK_SHIFT) != 0);
            return 0;
        case WM_MOUSEMOVE:
            Drag(point);
            return 0;
        case WM_LBUTTONUP:
            Release(point, (wParam & MK_SHIFT) != 0);
            return 0;
        case WM_CAPTURECHANGED:
            EndHand();
            return 0;
        case WM_MOUSEWHEEL:
            Wheel(wParam, lParam);
            return 0;
        case WM_DESTROY:
            SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcA(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK Canvas::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Canvas* canvas = ObjectOf<Canvas>(window, message, lParam);
    if (!canvas) return DefWindowProcA(window, message, wParam, lParam);
    canvas->window_ = window;
    return canvas->Handle(message, wParam, lParam);
}

} // namespace workbench
