#include "workbench/frame/document_window.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/undo_history.h"
#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr char kDocumentClass[] = "WorkbenchDocument";
constexpr int kBarWidth = 16;
constexpr int kLineStep = 40;                               ///< pixels
constexpr LONG kSmallestWidth = 160, kSmallestHeight = 120; ///< of the window

void ShowScrollNumbers(HWND bar, const ScrollNumbers& numbers) {
    SCROLLINFO information{};
    information.cbSize = sizeof information;
    information.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    information.nMax = std::max(0, numbers.length - 1);
    information.nPage = static_cast<UINT>(numbers.page);
    information.nPos = numbers.position;
    SetScrollInfo(bar, SB_CTL, &information, TRUE);
}

} // namespace

std::string DocumentTitle(const Document& document, const std::string& fileName) {
    const double hundredths = std::round(document.view().zoom * 10000);
    std::string percent = std::to_string(static_cast<long long>(hundredths) / 100);
    if (const int rest = static_cast<int>(std::fmod(hundredths, 100)); rest != 0) {
        percent += "." + std::to_string(rest / 10);
        if (rest % 10 != 0) percent += std::to_string(rest % 10);
    }
    const UndoHistory* history = document.history();
    return (fileName.empty() ? document.title : fileName) + " @ " + percent + "%" +
           (history && !history->saved() ? "*" : "");
}

HWND DocumentWindow::Make(HWND owner, const RECT& place) {
    RegisterFrameClass(kDocumentClass, Procedure);
    return CreateWindowExA(0, kDocumentClass, "", WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN,
                           place.left, place.top, place.right - place.left, place.bottom - place.top, owner,
                           nullptr, nullptr, nullptr);
}

DocumentWindow::DocumentWindow(Host& host, HWND owner, const RECT& place, const CanvasPictures& pictures)
    : host_(host), window_(Make(owner, place)), canvas_(host, window_, pictures) {
    verticalBar_ = CreateWindowExA(0, "SCROLLBAR", "", WS_CHILD | WS_VISIBLE | SBS_VERT, 0, 0, 0, 0, window_,
                                   nullptr, nullptr, nullptr);
    horizontalBar_ = CreateWindowExA(0, "SCROLLBAR", "", WS_CHILD | WS_VISIBLE | SBS_HORZ, 0, 0, 0, 0,
                                     window_, nullptr, nullptr, nullptr);
    canvas_.viewChanged = [this] {
        ShowNumbers();
        ShowTitle();
    };
    // Messages before this find no canvas yet.
    SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<INT_PTR>(this));
    Layout();
}

DocumentWindow::~DocumentWindow() {
    canvas_.viewChanged = nullptr;
    if (window_) DestroyWindow(window_);
}

void DocumentWindow::ShowFront() {
    canvas_.ShowWholePage();
    Refresh();
    ShowWindow(window_, host_.front() ? SW_SHOW : SW_HIDE);
    if (host_.front()) SetFocus(canvas_.window());
}

void DocumentWindow::Refresh() {
    canvas_.DocumentChanged();
    ShowTitle();
}

void DocumentWindow::ShowTitle() {
    const Document* document = host_.front();
    std::string title = document ? WindowText(DocumentTitle(*document, fileName)) : "";
    if (title == title_) return;
    SetWindowTextA(window_, title.c_str());
    title_ = std::move(title);
}

RECT DocumentWindow::Grip() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {client.right - kBarWidth, client.bottom - kBarWidth, client.right, client.bottom};
}

void DocumentWindow::Layout() {
    const RECT grip = Grip();
    canvas_.Move({0, 0, grip.left, grip.top});
    SetWindowPos(verticalBar_, nullptr, grip.left, 0, kBarWidth, grip.top, SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(horizontalBar_, nullptr, 0, grip.top, grip.left, kBarWidth, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(window_, nullptr, FALSE);
}

void DocumentWindow::ShowNumbers() {
    const Document* document = host_.front();
    if (!document || !verticalBar_ || !horizontalBar_) return;
    const HostRect world = WorldOf(UsablePage(*document));
    ShowScrollNumbers(horizontalBar_, HorizontalNumbers(document->view(), world));
    ShowScrollNumbers(verticalBar_, VerticalNumbers(document->view(), world));
}

void DocumentWindow::ScrollTo(HWND bar, int code) {
    SCROLLINFO information{};
    information.cbSize = sizeof information;
    information.fMask = SIF_ALL;
    GetScrollInfo(bar, SB_CTL, &information);
    const int page = static_cast<int>(information.nPage) * 9 / 10;
    double step = 0;
    switch (code) {
        case SB_LINEUP:
            step = -kLineStep;
            break;
        case SB_LINEDOWN:
            step = kLineStep;
            break;
        case SB_PAGEUP:
            step = -page;
            break;
        case SB_PAGEDOWN:
            step = page;
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            step = information.nTrackPos - information.nPos;
            break;
        case SB_TOP:
            step = information.nMin - information.nPos;
            break;
        case SB_BOTTOM:
            step = information.nMax - information.nPos;
            break;
        default:
            return;
    }
    if (bar == verticalBar_) {
        canvas_.ScrollBy(0, step);
    } else {
        canvas_.ScrollBy(step, 0);
    }
}

void DocumentWindow::DragGrip(POINT point) {
    ClientToScreen(window_, &point);
    RECT place{};
    GetWindowRect(window_, &place);
    const LONG width = std::max(point.x + gripOffset_.x - place.left, kSmallestWidth);
    const LONG height = std::max(point.y + gripOffset_.y - place.top, kSmallestHeight);
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void DocumentWindow::Paint() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    const FrameColors colors = ColorsOf(host_.theme());
    const RECT grip = Grip();
    FillColor(context, grip, colors.face);
    for (int row = 0; row < 3; ++row) {
        for (int column = 2 - row; column < 3; ++column) {
            const LONG x = grip.left + 3 + 4 * column, y = grip.top + 3 + 4 * row;
            FillColor(context, {x, y, x + 2, y + 2}, colors.disabledText);
        }
    }
    EndPaint(window_, &paint);
}

LRESULT DocumentWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) {
                if (raised) raised();
                SetFocus(canvas_.window());
            }
            return 0;
        case WM_HSCROLL:
        case WM_VSCROLL:
            ScrollTo(reinterpret_cast<HWND>(lParam), LOWORD(wParam));
            return 0;
        case WM_LBUTTONDOWN: {
            const RECT grip = Grip();
            RECT place{};
            if (!PtInRect(&grip, point)) return 0;
            POINT screen = point;
            ClientToScreen(window_, &screen);
            GetWindowRect(window_, &place);
            gripOffset_ = {place.right - screen.x, place.bottom - screen.y};
            gripHeld_ = true;
            SetCapture(window_);
            return 0;
        }
        case WM_MOUSEMOVE:
            if (gripHeld_) DragGrip(point);
            return 0;
        case WM_LBUTTONUP:
            if (gripHeld_) ReleaseCapture();
            return 0;
        case WM_CAPTURECHANGED:
            gripHeld_ = false;
            return 0;
        case WM_CLOSE:
            if (closeAsked) closeAsked();
            return 0;
        case WM_DESTROY:
            SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcA(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK DocumentWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DocumentWindow* self = ObjectOf<DocumentWindow>(window, message, lParam);
    if (!self) return DefWindowProcA(window, message, wParam, lParam);
    return self->Handle(message, wParam, lParam);
}

} // namespace workbench
