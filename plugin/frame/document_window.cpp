#include "plugin/frame/document_window.h"

#include "plugin/store/cp932.h"

namespace {

constexpr char kTitleMark[] = " @ ";
constexpr int kTitleBytes = 1024;
constexpr int kMostWindows = 32; ///< that are looked at

bool IsDocumentTitle(HWND window) {
    char title[kTitleBytes] = "";
    GetWindowTextA(window, title, kTitleBytes);
    return FindPart(title, kTitleMark) != nullptr;
}

HWND TopDocumentWindow() {
    HWND window = GetWindow(GetDesktopWindow(), GW_CHILD);
    while (window && !IsDocumentTitle(window)) window = GetWindow(window, GW_HWNDNEXT);
    return window;
}

/// The smallest window over a point so far, by width plus height; of equal ones the last.
struct Search {
    POINT point;
    int count;
    HWND smallest;
    int size;
};

void Look(Search& search, HWND window) {
    RECT place;
    if (search.count == kMostWindows || !IsWindowVisible(window) || !GetWindowRect(window, &place)) return;
    if (!PtInRect(&place, search.point)) return;
    ++search.count;
    const int size = place.right - place.left + place.bottom - place.top;
    if (search.smallest && size > search.size) return;
    search.smallest = window;
    search.size = size;
}

BOOL CALLBACK LookAtChild(HWND window, LPARAM search) {
    Look(*reinterpret_cast<Search*>(search), window);
    return TRUE;
}

} // namespace

HWND FindDocumentWindow() {
    const HWND top = TopDocumentWindow();
    RECT place;
    if (!top || !GetWindowRect(top, &place)) return nullptr;
    Search search{};
    search.point = {place.left + (place.right - place.left) / 3, place.top + (place.bottom - place.top) / 3};
    Look(search, top);
    EnumChildWindows(top, LookAtChild, reinterpret_cast<LPARAM>(&search));
    return search.smallest;
}
