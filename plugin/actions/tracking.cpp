#include "plugin/actions/tracking.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "plugin/actions/find_art.h"
#include "plugin/actions/view_map.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/host/suites.h"
#include "plugin/placement/snap.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"

namespace {

constexpr int kIgnoredPixels = 2; ///< a move of no more is none
constexpr DWORD kPollMilliseconds = 50;
constexpr int kFirstSnapCursor = 4; ///< for no snap and for the grid; anchor, intersection and path follow

/// What lasts as long as one drag.
struct Tracking {
    HWND window = nullptr;
    HDC context = nullptr;
    ViewMap map{};
    FixedRect record{};
    RECT outline{};    ///< on the screen now; no width: none
    HostPoint point{}; ///< the pointer's, behind the snap
    POINT lastPixel{};
};

/// The window's context with a pen and a mode that invert, for the length of a drag.
class OutlineContext {
public:
    explicit OutlineContext(HWND window) : window_(window), context_(GetDC(window)) {
        pen_ = CreatePen(PS_SOLID, 0, RGB(0, 0, 0));
        oldPen_ = SelectObject(context_, pen_);
        oldMode_ = SetROP2(context_, R2_NOT);
    }
    ~OutlineContext() {
        SetROP2(context_, oldMode_);
        SelectObject(context_, oldPen_);
        DeleteObject(pen_);
        ReleaseDC(window_, context_);
    }
    OutlineContext(const OutlineContext&) = delete;
    OutlineContext& operator=(const OutlineContext&) = delete;

    HDC get() const { return context_; }

private:
    HWND window_;
    HDC context_;
    HPEN pen_;
    HGDIOBJ oldPen_;
    int oldMode_;
};

/// What the timer last saw must still be there: a document may have been closed since.
bool CanTrack() {
    ViewHandle view = nullptr;
    return DocumentViewSuite().GetCurrentView(&view) == kHostNoError && view &&
           view == globals->documentView && globals->docWindow && IsWindow(globals->docWindow) &&
           globals->viewZoom > 0;
}

bool ReadBounds(FixedRect& bounds, char* group, int32_t& number) {
    if (!GetRecordOfRow(globals->selectedRow, group, &number)) return false;
    AidbReadRecord(group, number, nullptr, kReadHeader, true);
    if (!globals->curRecord) return false;
    RecordHeader header;
    std::memcpy(&header, BlockBytes(globals->curRecord), sizeof header);
    bounds = {header.boundsLeft, header.boundsTop, header.boundsRight, header.boundsBottom};
    return true;
}

POINT PointerPixel(HWND window) {
    POINT pixel{};
    GetCursorPos(&pixel);
    ScreenToClient(window, &pixel);
    return pixel;
}

bool IsDown(SHORT keyState) {
    return keyState < 0;
}

/// Pulls the point; where nothing pulls it stays as it was.
int16_t Snap(HostPoint& point) {
    const HostPoint raw = point;
    int16_t kind = kSnapNone;
    if (globals->flUseFcur) SnapToAnchor(point, kind);
    if (globals->flUseFcrs && kind == kSnapNone) SnapToIntersection(point, kind);
    if (globals->flUseFops && kind == kSnapNone) SnapToPath(point, kind);
    if (globals->flUseGrid && kind == kSnapNone) {
        SnapToGrid(point);
        kind = kSnapGrid;
    }
    // A search that found nothing may have moved it.
    if (kind == kSnapNone) point = raw;
    return kind;
}

void ShowSnap(int16_t kind) {
    if (kind == globals->snapKind) return;
    globals->snapKind = kind;
    const HCURSOR cursor = globals->cursors[kFirstSnapCursor + (kind > kSnapGrid ? kind - kSnapGrid : 0)];
    if (cursor) SetCursor(cursor);
}

/// Drawn a second time an outline is gone.
void ShowOutline(Tracking& tracking, const RECT& outline) {
    DrawOutlineRect(tracking.context, tracking.outline);
    DrawOutlineRect(tracking.context, outline);
    tracking.outline = outline;
}

RECT PixelsOf(const ViewMap& map, const HostRect& rect) {
    const POINT leftTop = ArtToPixel(map, {rect.left, rect.top});
    const POINT rightBottom = ArtToPixel(map, {rect.right, rect.bottom});
    return {leftTop.x, leftTop.y, rightBottom.x, rightBottom.y};
}

/// With Control held: the outline of the art that would get the tags.
void ShowTagTarget(Tracking& tracking) {
    const ArtHandle art = FindArtAtPoint(tracking.point);
    HostRect bounds{};
    if (art && ArtSuite().GetArtBounds(art, &bounds) == kHostNoError) {
        ShowOutline(tracking, PixelsOf(tracking.map, bounds));
        globals->trackState = 2;
        globals->trackTarget = art;
    } else {
        ShowOutline(tracking, RECT{});
        globals->trackState = 0;
    }
}

void TrackMove(Tracking& tracking, POINT pixel) {
    tracking.point = PixelToArt(tracking.map, pixel);
    ShowSnap(Snap(tracking.point));
    tracking.lastPixel = pixel;
    if (IsDown(GetKeyState(VK_CONTROL))) {
        ShowTagTarget(tracking);
    } else {
        const HostRect outline = OutlineOfRecord(tracking.record, globals->originMode, tracking.point);
        ShowOutline(tracking, PixelsOf(tracking.map, outline));
        globals->trackState = 1;
    }
}

void FollowPointer(Tracking& tracking) {
    const Snapping snapping;
    for (;;) {
        const POINT pixel = PointerPixel(tracking.window);
        if (std::abs(pixel.x - tracking.lastPixel.x) > kIgnoredPixels ||
            std::abs(pixel.y - tracking.lastPixel.y) > kIgnoredPixels) {
            TrackMove(tracking, pixel);
        }
        if (!IsDown(GetAsyncKeyState(VK_LBUTTON))) return;
        Sleep(kPollMilliseconds);
    }
}

/// `trackState` is the last processed move's, whatever Control says now.
void Drop(const Tracking& tracking, const char* group, int32_t number) {
    if (!IsDown(GetKeyState(VK_CONTROL))) {
        globals->placePoint = tracking.point;
        AidbLoadArt(group, number);
    } else if (globals->trackState == 2) {
        AidbLoadArt(group, number);
    }
}

} // namespace

void TrackPlacement() {
    globals->trackState = 0;
    const ClearedAtEnd tracked(globals->trackState);
    if (!CanTrack()) {
        MessageBeep(static_cast<UINT>(-1));
        return;
    }
    RECT client{};
    GetClientRect(globals->docWindow, &client);
    const OutlineContext context(globals->docWindow);
    Tracking tracking{.window = globals->docWindow, .context = context.get()};
    tracking.map = MapOfView(globals->viewBounds, globals->viewZoom, client.right, client.bottom);
    char group[kNameBytes];
    int32_t number = 0;
    if (ReadBounds(tracking.record, group, number)) {
        tracking.lastPixel = PointerPixel(tracking.window);
        tracking.point = PixelToArt(tracking.map, tracking.lastPixel);
        FollowPointer(tracking);
        DrawOutlineRect(tracking.context, tracking.outline);
        Drop(tracking, group, number);
    }
}
