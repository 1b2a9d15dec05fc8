// Lines and rectangles with a pen.
#include <cstdlib>

#include "win32/gdi/context.h"

namespace {

struct Ink {
    uint32_t color;
    int operation;

    void Put(uint32_t& pixel) const {
        switch (operation) {
            case R2_NOT:
                pixel ^= 0xFFFFFF;
                break;
            case R2_XORPEN:
                pixel ^= color;
                break;
            default:
                pixel = color;
        }
    }
};

Ink InkOf(const Context& context, uint32_t color) {
    return {color, context.state.rasterOperation};
}

// A line from `from` up to, but without, `to`, in the surface's coordinates, as a walk along its longer axis.
// Where the line passes halfway between two pixels the lesser coordinate is taken, whichever way it runs.
struct Walk {
    int64_t x, y;         // the first point
    int64_t steps, minor; // extents on the longer and on the shorter axis
    bool steep;           // y is the longer axis
    int alongSign, acrossSign;

    Walk(POINT from, POINT to) : x(from.x), y(from.y) {
        const int64_t dx = int64_t{to.x} - from.x, dy = int64_t{to.y} - from.y;
        steep = std::abs(dy) > std::abs(dx);
        steps = std::max(std::abs(dx), std::abs(dy));
        minor = std::min(std::abs(dx), std::abs(dy));
        alongSign = (steep ? dy : dx) < 0 ? -1 : 1;
        acrossSign = (steep ? dx : dy) < 0 ? -1 : 1;
    }

    POINT At(int64_t step) const {
        // Nearest to step * minor / steps; a tie goes to the lesser coordinate.
        const int64_t across =
            steps == 0 ? 0 : (2 * step * minor + steps - (acrossSign > 0 ? 1 : 0)) / (2 * steps);
        const int64_t along = step * alongSign, aside = across * acrossSign;
        return steep ? POINT{static_cast<LONG>(x + aside), static_cast<LONG>(y + along)}
                     : POINT{static_cast<LONG>(x + along), static_cast<LONG>(y + aside)};
    }

    // The steps at which the longer coordinate lies from `low` up to, but without, `high`.
    std::pair<int64_t, int64_t> StepsWithin(int64_t low, int64_t high) const {
        const int64_t start = steep ? y : x;
        const int64_t first = alongSign > 0 ? low - start : start - high + 1;
        const int64_t end = alongSign > 0 ? high - start : start - low + 1;
        return {std::clamp<int64_t>(first, 0, steps), std::clamp<int64_t>(end, 0, steps)};
    }
};

void DrawThinLine(Context& context, const Walk& walk, const Pen& pen) {
    const Ink ink = InkOf(context, pen.pixel), gap = InkOf(context, PixelOf(context.state.backColor));
    const bool dotted = pen.style == PS_DOT, gapsDrawn = context.state.backMode == OPAQUE;
    for (const RECT& part : context.Clip()) {
        const auto [first, end] =
            walk.steep ? walk.StepsWithin(part.top, part.bottom) : walk.StepsWithin(part.left, part.right);
        RECT touched = {};
        for (int64_t step = first; step < end; ++step) {
            const POINT point = walk.At(step);
            if (!Contains(part, point.x, point.y)) continue;
            const bool inGap = dotted && step % 2 != 0;
            if (inGap && !gapsDrawn) continue;
            (inGap ? gap : ink).Put(context.surface->Row(point.y)[point.x]);
            if (IsEmpty(touched)) context.Touch({point.x, point.y, point.x + 1, point.y + 1});
            touched = {point.x, point.y, point.x + 1, point.y + 1};
        }
        if (!IsEmpty(touched)) context.Touch(touched);
    }
}

// All pixels of the squares along a line, each once: what they cover of a row hangs together.
void DrawWideLine(Context& context, const Walk& walk, const Pen& pen) {
    const Ink ink = InkOf(context, pen.pixel);
    const int64_t before = pen.width / 2, after = pen.width - before;
    for (const RECT& part : context.Clip()) {
        std::vector<std::pair<int64_t, int64_t>> spans(static_cast<size_t>(part.bottom - part.top),
                                                       {INT64_MAX, INT64_MIN});
        const auto [first, end] = walk.steep ? walk.StepsWithin(part.top - after, part.bottom + before + 1)
                                             : walk.StepsWithin(part.left - after, part.right + before + 1);
        for (int64_t step = first; step < end; ++step) {
            const POINT point = walk.At(step);
            const int64_t top = std::max<int64_t>(point.y - before, part.top);
            const int64_t bottom = std::min<int64_t>(point.y + after, part.bottom);
            for (int64_t y = top; y < bottom; ++y) {
                auto& [left, right] = spans[static_cast<size_t>(y - part.top)];
                left = std::min<int64_t>(left, point.x - before);
                right = std::max<int64_t>(right, point.x + after);
            }
        }
        for (int y = part.top; y < part.bottom; ++y) {
            const auto [left, right] = spans[static_cast<size_t>(y - part.top)];
            if (left >= right) continue;
            const RECT row = Common(part, {Near(left), y, Near(right), y + 1});
            if (IsEmpty(row)) continue;
            uint32_t* const pixels = context.surface->Row(y);
            for (int x = row.left; x < row.right; ++x) ink.Put(pixels[x]);
            context.Touch(row);
        }
    }
}

void DrawLine(Context& context, POINT from, POINT to) {
    const Pen& pen = *context.state.pen;
    if (pen.style == PS_NULL) return;
    const auto place = [&](POINT point) {
        return POINT{Near(int64_t{point.x} + context.originX), Near(int64_t{point.y} + context.originY)};
    };
    const Walk walk(place(from), place(to));
    if (pen.width > 1) {
        DrawWideLine(context, walk, pen);
    } else {
        DrawThinLine(context, walk, pen);
    }
}

void FillInside(Context& context, const RECT& rectangle) {
    const Brush& brush = *context.state.brush;
    if (brush.hollow) return;
    const Ink ink = InkOf(context, brush.pixel);
    ChangePixels(context, OnSurface(context, rectangle), [ink](uint32_t& pixel) { ink.Put(pixel); });
}

} // namespace

BOOL MoveToEx(HDC handle, int x, int y, POINT* old) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return FALSE;
    if (old != nullptr) *old = context->state.position;
    context->state.position = {x, y};
    return TRUE;
}

BOOL LineTo(HDC handle, int x, int y) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return FALSE;
    DrawLine(*context, context->state.position, {x, y});
    context->state.position = {x, y};
    return TRUE;
}

BOOL Rectangle(HDC handle, int left, int top, int right, int bottom) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return FALSE;
    RECT r = {Near(std::min(left, right)), Near(std::min(top, bottom)), Near(std::max(left, right)),
              Near(std::max(top, bottom))};
    const Pen& pen = *context->state.pen;
    // Right and bottom lie outside; without a pen the place of its line stays empty too.
    --r.right;
    --r.bottom;
    if (r.right < r.left || r.bottom < r.top) return TRUE;
    if (pen.style == PS_NULL) {
        FillInside(*context, r);
        return TRUE;
    }
    const LONG before = pen.width / 2, after = pen.width - before;
    FillInside(*context, {r.left + after, r.top + after, r.right - before, r.bottom - before});
    const POINT corners[] = {{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}};
    for (int i = 0; i < 4; ++i) DrawLine(*context, corners[i], corners[(i + 1) % 4]);
    return TRUE;
}
