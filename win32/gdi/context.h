/// A device context: where it draws, with what, and where it may.
#pragma once

#include <windows.h>

#include <cairo.h>

#include <span>
#include <utility>
#include <vector>

#include "win32/gdi/gdi_objects.h"

/// The desktop's frame buffer.
struct Screen {
    Surface surface;
    RECT changed = {};    ///< around all that was drawn since this was last asked for
    unsigned version = 0; ///< another one for each size
};
extern Screen theScreen;

/// What SaveDC keeps.  The objects are counted as selected by it.
struct ContextState {
    Brush* brush = nullptr;
    Pen* pen = nullptr;
    Font* font = nullptr;
    Bitmap* bitmap = nullptr; ///< of a context of memory alone
    COLORREF textColor = 0;
    COLORREF backColor = 0xFFFFFF;
    int backMode = OPAQUE;
    int rasterOperation = R2_COPYPEN;
    POINT position = {};
    bool clipped = false;
    RECT clip = {}; ///< in the context's coordinates
};

struct Context : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kContext;
    explicit Context(bool onScreen);
    ~Context() override;

    /// Where it may draw, in the surface's coordinates; the rectangles don't overlap.
    std::span<const RECT> Clip();
    /// Whether a pixel of the surface may be drawn.  Quick for one near the last.
    bool MayDraw(int x, int y) { return (ClipIsKnown() && Contains(lastHit_, x, y)) || FindHit(x, y); }
    /// Something inside of this rectangle of the surface was drawn.
    void Touch(const RECT& rectangle) const {
        if (screen && !IsWithin(rectangle, theScreen.changed)) AddToChanges(rectangle);
    }

    void SelectDefaults();
    void ForgetClip() { clipKnown_ = false; }

    const bool screen;
    Surface* surface = nullptr; ///< the screen's, or the selected bitmap's
    int originX = 0, originY = 0;
    cairo_region_t* visible = nullptr; ///< of the screen; owned
    ContextState state;
    std::vector<ContextState> saved;

private:
    bool ClipIsKnown() const { return clipKnown_ && (!screen || screenVersion_ == theScreen.version); }
    void FindClip();
    bool FindHit(int x, int y);
    static void AddToChanges(const RECT& rectangle);

    bool clipKnown_ = false;
    unsigned screenVersion_ = 0;
    std::vector<RECT> clip_;
    RECT lastHit_ = {};
};

inline Context* ContextOf(HDC handle) {
    return ObjectOf<Context>(handle);
}

/// A rectangle of the context on its surface.
inline RECT OnSurface(const Context& context, const RECT& rectangle) {
    return Moved(rectangle, context.originX, context.originY);
}

/// Calls `draw(part)` for each part of a rectangle of the surface that may be drawn.
template <typename Draw>
void ForEachPart(Context& context, const RECT& rectangle, Draw draw) {
    for (const RECT& allowed : context.Clip()) {
        const RECT part = Common(rectangle, allowed);
        if (IsEmpty(part)) continue;
        draw(part);
        context.Touch(part);
    }
}

/// Calls `change(pixel)` for each pixel of a rectangle of the surface that may be drawn.
template <typename Change>
void ChangePixels(Context& context, const RECT& rectangle, Change change) {
    ForEachPart(context, rectangle, [&](const RECT& part) {
        for (int y = part.top; y < part.bottom; ++y) {
            uint32_t* const row = context.surface->Row(y);
            for (int x = part.left; x < part.right; ++x) change(row[x]);
        }
    });
}
