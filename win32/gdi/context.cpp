#include "win32/gdi/context.h"

#include "win32/gdi/screen_context.h"
#include "win32/last_error.h"

Screen theScreen;

namespace {

// The bitmap that every context of memory begins with, as big as can be known of.
Bitmap* FirstBitmap() {
    static const HGDIOBJ handle = [] {
        const HGDIOBJ bitmap = CreateCompatibleBitmap(nullptr, 1, 1);
        GiveToSystem(bitmap);
        return bitmap;
    }();
    return ObjectOf<Bitmap>(handle);
}

void CountSelections(const ContextState& state, int change) {
    const auto count = [change](GdiObject* object) {
        if (object != nullptr) object->selections += change;
    };
    count(state.brush);
    count(state.pen);
    count(state.font);
    count(state.bitmap);
}

template <typename Object>
HGDIOBJ Exchange(Object*& selected, Object* object) {
    --selected->selections;
    ++object->selections;
    return std::exchange(selected, object)->handle;
}

HGDIOBJ ExchangeBitmap(Context& context, Bitmap* bitmap) {
    // A bitmap is drawn into by one context at a time.
    const bool taken = bitmap->selections > 0 && !bitmap->system && bitmap != context.state.bitmap;
    if (context.screen || taken) return nullptr;
    context.surface = &bitmap->surface;
    context.ForgetClip();
    return Exchange(context.state.bitmap, bitmap);
}

} // namespace

Context::Context(bool onScreen) : GdiObject(kKind), screen(onScreen) {
    surface = &theScreen.surface;
}

Context::~Context() {
    CountSelections(state, -1);
    for (const ContextState& old : saved) CountSelections(old, -1);
    cairo_region_destroy(visible);
}

void Context::SelectDefaults() {
    state.brush = StockObject<Brush>(WHITE_BRUSH);
    state.pen = StockObject<Pen>(BLACK_PEN);
    state.font = StockObject<Font>(SYSTEM_FONT);
    CountSelections(state, 1);
}

void Context::FindClip() {
    clip_.clear();
    RECT limits = {0, 0, surface->width, surface->height};
    if (state.clipped) limits = Common(limits, OnSurface(*this, state.clip));
    const auto add = [&](const RECT& rectangle) {
        const RECT part = Common(rectangle, limits);
        if (!IsEmpty(part)) clip_.push_back(part);
    };
    if (!screen) {
        add(limits);
    } else if (visible != nullptr) {
        const int count = cairo_region_num_rectangles(visible);
        for (int i = 0; i < count; ++i) {
            cairo_rectangle_int_t part;
            cairo_region_get_rectangle(visible, i, &part);
            add({part.x, part.y, Near(int64_t{part.x} + part.width), Near(int64_t{part.y} + part.height)});
        }
    }
    lastHit_ = {};
    screenVersion_ = theScreen.version;
    clipKnown_ = true;
}

std::span<const RECT> Context::Clip() {
    if (!ClipIsKnown()) FindClip();
    return clip_;
}

bool Context::FindHit(int x, int y) {
    for (const RECT& allowed : Clip()) {
        if (!Contains(allowed, x, y)) continue;
        lastHit_ = allowed;
        return true;
    }
    return false;
}

void Context::AddToChanges(const RECT& rectangle) {
    RECT& changed = theScreen.changed;
    if (IsEmpty(changed)) {
        changed = rectangle;
    } else {
        changed = {std::min(changed.left, rectangle.left), std::min(changed.top, rectangle.top),
                   std::max(changed.right, rectangle.right), std::max(changed.bottom, rectangle.bottom)};
    }
}

// ---- The screen's contexts ------------------------------------------------------------------------------

void ResizeScreen(int width, int height) {
    Screen& screen = theScreen;
    screen.surface.width = std::max(width, 0);
    screen.surface.height = std::max(height, 0);
    const size_t count =
        static_cast<size_t>(screen.surface.width) * static_cast<size_t>(screen.surface.height);
    screen.surface.pixels.assign(count, 0);
    screen.changed = {0, 0, screen.surface.width, screen.surface.height};
    ++screen.version;
}

FrameBuffer ScreenPixels() {
    const Surface& surface = theScreen.surface;
    return {surface.width, surface.height, surface.pixels.data()};
}

HDC NewScreenContext(int originX, int originY, cairo_region_t* visible) {
    auto context = std::make_unique<Context>(true);
    context->originX = originX;
    context->originY = originY;
    context->visible = visible;
    context->SelectDefaults();
    return static_cast<HDC>(AddObject(std::move(context)));
}

bool EndScreenContext(HDC handle) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || !context->screen) return false;
    RemoveObject(context);
    return true;
}

void SetScreenContextRegion(HDC handle, int originX, int originY, cairo_region_t* visible) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || !context->screen) {
        cairo_region_destroy(visible);
        return;
    }
    cairo_region_destroy(context->visible);
    context->visible = visible;
    context->originX = originX;
    context->originY = originY;
    context->ForgetClip();
}

bool TakeScreenChanges(RECT& changed) {
    changed = std::exchange(theScreen.changed, RECT{});
    return !IsEmpty(changed);
}

DrawingCounts CountDrawingObjects() {
    return {CountObjectsOf(ObjectKind::kContext), CountObjectsOf(ObjectKind::kBrush),
            CountObjectsOf(ObjectKind::kPen), CountObjectsOf(ObjectKind::kFont),
            CountObjectsOf(ObjectKind::kBitmap)};
}

// ---- All contexts ---------------------------------------------------------------------------------------

HDC CreateCompatibleDC(HDC /*context*/) {
    auto context = std::make_unique<Context>(false);
    context->state.bitmap = FirstBitmap();
    context->surface = &context->state.bitmap->surface;
    context->SelectDefaults();
    return static_cast<HDC>(AddObject(std::move(context)));
}

BOOL DeleteDC(HDC handle) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || context->screen) return FALSE;
    RemoveObject(context);
    return TRUE;
}

int GetDeviceCaps(HDC handle, int index) {
    if (ContextOf(handle) == nullptr) return 0;
    switch (index) {
        case LOGPIXELSX:
        case LOGPIXELSY:
            return 96;
        case HORZRES:
            return theScreen.surface.width;
        case VERTRES:
            return theScreen.surface.height;
        case BITSPIXEL:
            return 32;
        default:
            return 0;
    }
}

int SaveDC(HDC handle) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return 0;
    CountSelections(context->state, 1);
    context->saved.push_back(context->state);
    return static_cast<int>(context->saved.size());
}

BOOL RestoreDC(HDC handle, int number) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return FALSE;
    const auto count = static_cast<int64_t>(context->saved.size());
    const int64_t level = number < 0 ? count + number + 1 : number;
    if (level < 1 || level > count) return FALSE;
    while (static_cast<int64_t>(context->saved.size()) >= level) {
        CountSelections(context->state, -1);
        context->state = context->saved.back();
        context->saved.pop_back();
    }
    if (context->state.bitmap != nullptr) context->surface = &context->state.bitmap->surface;
    context->ForgetClip();
    return TRUE;
}

int IntersectClipRect(HDC handle, int left, int top, int right, int bottom) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return 0;
    const RECT rectangle = {Near(std::min(left, right)), Near(std::min(top, bottom)),
                            Near(std::max(left, right)), Near(std::max(top, bottom))};
    ContextState& state = context->state;
    state.clip = state.clipped ? Common(state.clip, rectangle) : rectangle;
    state.clipped = true;
    context->ForgetClip();
    return IsEmpty(state.clip) ? NULLREGION : SIMPLEREGION;
}

HGDIOBJ SelectObject(HDC handle, HGDIOBJ objectHandle) {
    Context* const context = ContextOf(handle);
    GdiObject* const object = ObjectOf(objectHandle);
    if (context == nullptr || object == nullptr) return nullptr;
    switch (object->kind) {
        case ObjectKind::kBrush:
            return Exchange(context->state.brush, static_cast<Brush*>(object));
        case ObjectKind::kPen:
            return Exchange(context->state.pen, static_cast<Pen*>(object));
        case ObjectKind::kFont:
            return Exchange(context->state.font, static_cast<Font*>(object));
        case ObjectKind::kBitmap:
            return ExchangeBitmap(*context, static_cast<Bitmap*>(object));
        default:
            return nullptr;
    }
}

int SetROP2(HDC handle, int mode) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return 0;
    if (mode != R2_NOT && mode != R2_XORPEN && mode != R2_COPYPEN) {
        RefuseLoudly("SetROP2: this mode");
        return 0;
    }
    return std::exchange(context->state.rasterOperation, mode);
}

int SetBkMode(HDC handle, int mode) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || (mode != TRANSPARENT && mode != OPAQUE)) return 0;
    return std::exchange(context->state.backMode, mode);
}

COLORREF SetBkColor(HDC handle, COLORREF color) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return CLR_INVALID;
    return std::exchange(context->state.backColor, color & 0xFFFFFF);
}

COLORREF SetTextColor(HDC handle, COLORREF color) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return CLR_INVALID;
    return std::exchange(context->state.textColor, color & 0xFFFFFF);
}
