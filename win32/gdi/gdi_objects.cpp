#include "win32/gdi/gdi_objects.h"

#include <array>
#include <new>
#include <vector>

#include "win32/last_error.h"

namespace {

constexpr size_t kMostObjects = 10000;
constexpr int kStockObjects = DEFAULT_GUI_FONT + 1;

struct Place {
    std::unique_ptr<GdiObject> object;
    uint16_t uses = 0;
};
struct ObjectTable {
    std::vector<Place> places;
    std::vector<uint16_t> empty;
    std::array<HGDIOBJ, kStockObjects> stock{};
    std::array<int, static_cast<size_t>(ObjectKind::kIcon) + 1> counts{};
};

// Never destroyed: at the program's end modules still give back what they hold, in any order.
ObjectTable& Objects() {
    static ObjectTable& table = *new ObjectTable;
    return table;
}

int& CountOf(const GdiObject& object) {
    return Objects().counts[static_cast<size_t>(object.kind)];
}

// Never below 0x10000, where the numbers of colours and of window classes are.
HGDIOBJ HandleOf(size_t index, uint16_t uses) {
    return reinterpret_cast<HGDIOBJ>(static_cast<uintptr_t>(uses) << 16 | index);
}

template <typename Handle>
Handle Added(std::unique_ptr<GdiObject> object) {
    return static_cast<Handle>(AddObject(std::move(object)));
}

HBRUSH AddBrush(uint32_t pixel, bool hollow) {
    auto brush = std::make_unique<Brush>();
    brush->pixel = pixel;
    brush->hollow = hollow;
    return Added<HBRUSH>(std::move(brush));
}

HPEN AddPen(int style, int width, uint32_t pixel) {
    auto pen = std::make_unique<Pen>();
    pen->style = style;
    pen->width = std::max(width, 1);
    pen->pixel = pixel;
    return Added<HPEN>(std::move(pen));
}

HFONT AddFont(const TypefaceKey& key, bool underline, bool strikeOut) {
    auto font = std::make_unique<Font>();
    font->typeface = FindTypeface(key);
    font->underline = underline;
    font->strikeOut = strikeOut;
    return Added<HFONT>(std::move(font));
}

HGDIOBJ MakeStockObject(int index) {
    switch (index) {
        case WHITE_BRUSH:
            return AddBrush(0xFFFFFF, false);
        case LTGRAY_BRUSH:
            return AddBrush(0xC0C0C0, false);
        case GRAY_BRUSH:
            return AddBrush(0x808080, false);
        case DKGRAY_BRUSH:
            return AddBrush(0x404040, false);
        case BLACK_BRUSH:
            return AddBrush(0, false);
        case NULL_BRUSH:
            return AddBrush(0, true);
        case WHITE_PEN:
            return AddPen(PS_SOLID, 1, 0xFFFFFF);
        case BLACK_PEN:
            return AddPen(PS_SOLID, 1, 0);
        case NULL_PEN:
            return AddPen(PS_NULL, 1, 0);
        case SYSTEM_FONT:
            return AddFont({"System", 16, FW_BOLD, false}, false, false);
        case DEFAULT_GUI_FONT:
            return AddFont({"MS Shell Dlg", -11, FW_NORMAL, false}, false, false);
        default:
            return nullptr;
    }
}

} // namespace

HGDIOBJ AddObject(std::unique_ptr<GdiObject> object) {
    ObjectTable& table = Objects();
    if (table.empty.empty()) {
        if (table.places.size() == kMostObjects) return nullptr;
        table.empty.push_back(static_cast<uint16_t>(table.places.size()));
        table.places.emplace_back();
    }
    const size_t index = table.empty.back();
    table.empty.pop_back();
    Place& place = table.places[index];
    if (++place.uses == 0) place.uses = 1;
    object->handle = HandleOf(index, place.uses);
    ++CountOf(*object);
    place.object = std::move(object);
    return place.object->handle;
}

void RemoveObject(GdiObject* object) {
    ObjectTable& table = Objects();
    const auto index = static_cast<uint16_t>(reinterpret_cast<uintptr_t>(object->handle) & 0xFFFF);
    if (!object->system) --CountOf(*object);
    // Out of the table before its end, which may remove others.
    const std::unique_ptr<GdiObject> last = std::move(table.places[index].object);
    table.empty.push_back(index);
}

void GiveToSystem(HGDIOBJ handle) {
    GdiObject* const object = ObjectOf(handle);
    if (object == nullptr || object->system) return;
    object->system = true;
    --CountOf(*object);
}

GdiObject* ObjectOf(const void* handle) {
    const ObjectTable& table = Objects();
    const auto number = reinterpret_cast<uintptr_t>(handle);
    const size_t index = number & 0xFFFF;
    if (number >> 32 != 0 || index >= table.places.size()) return nullptr;
    const Place& place = table.places[index];
    return place.uses == number >> 16 ? place.object.get() : nullptr;
}

int CountObjectsOf(ObjectKind kind) {
    return Objects().counts[static_cast<size_t>(kind)];
}

HGDIOBJ GetStockObject(int index) {
    if (index < 0 || index >= kStockObjects) return nullptr;
    HGDIOBJ& handle = Objects().stock[static_cast<size_t>(index)];
    if (handle == nullptr) {
        handle = MakeStockObject(index);
        GiveToSystem(handle);
    }
    return handle;
}

HBRUSH CreateSolidBrush(COLORREF color) {
    return AddBrush(PixelOf(color), false);
}

HPEN CreatePen(int style, int width, COLORREF color) {
    if (style != PS_SOLID && style != PS_DOT && style != PS_NULL) {
        RefuseLoudly("CreatePen: this style");
        return nullptr;
    }
    // Windows has no wide pens with gaps.
    return AddPen(style == PS_DOT && width > 1 ? PS_SOLID : style, std::min(width, kFarthest),
                  PixelOf(color));
}

HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD /*charSet*/, DWORD /*outPrecision*/,
                  DWORD /*clipPrecision*/, DWORD /*quality*/, DWORD /*pitchAndFamily*/, LPCSTR face) {
    if (width != 0 || escapement != 0 || orientation != 0) {
        RefuseLoudly("CreateFontA: a width or an angle");
        return nullptr;
    }
    const TypefaceKey key = {face == nullptr ? "" : face, height, weight, italic != 0};
    return AddFont(key, underline != 0, strikeOut != 0);
}

HBITMAP CreateCompatibleBitmap(HDC /*context*/, int width, int height) {
    if (width < 0 || height < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    if (width == 0 || height == 0) width = height = 1;
    constexpr int64_t kMostPixels = int64_t{1} << 28;
    if (static_cast<int64_t>(width) * height > kMostPixels) {
        SetErrorOfMemory();
        return nullptr;
    }
    try {
        auto bitmap = std::make_unique<Bitmap>();
        bitmap->surface.width = width;
        bitmap->surface.height = height;
        bitmap->surface.pixels.resize(static_cast<size_t>(width) * static_cast<size_t>(height));
        return Added<HBITMAP>(std::move(bitmap));
    } catch (const std::bad_alloc&) {
        return FailForMemory(HBITMAP{});
    }
}

BOOL DeleteObject(HGDIOBJ handle) {
    GdiObject* const object = ObjectOf(handle);
    if (object == nullptr || object->kind == ObjectKind::kIcon) return FALSE;
    if (object->kind == ObjectKind::kContext) return DeleteDC(static_cast<HDC>(handle));
    if (object->system) return TRUE;
    if (object->selections > 0) return FALSE;
    RemoveObject(object);
    return TRUE;
}
