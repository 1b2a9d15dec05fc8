/// The objects of drawing behind their handles.
///
/// A handle is a number: the object's place in one table and how often that place was used before.  So a
/// handle that is stale, of another kind or no handle at all is known for what it is.
#pragma once

#include <windows.h>

#include <memory>

#include "win32/gdi/surface.h"
#include "win32/gdi/typeface.h"

enum class ObjectKind { kContext, kBrush, kPen, kFont, kBitmap, kIcon };

struct GdiObject {
    explicit GdiObject(ObjectKind itsKind) : kind(itsKind) {}
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;
    virtual ~GdiObject() = default;

    const ObjectKind kind;
    bool system = false; ///< lives for ever and isn't counted
    int selections = 0;  ///< by contexts and the states that they saved
    HGDIOBJ handle = nullptr;
};

struct Brush : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kBrush;
    Brush() : GdiObject(kKind) {}
    bool hollow = false;
    uint32_t pixel = 0;
};

struct Pen : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kPen;
    Pen() : GdiObject(kKind) {}
    int style = PS_SOLID;
    int width = 1;
    uint32_t pixel = 0;
};

struct Font : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kFont;
    Font() : GdiObject(kKind) {}
    std::shared_ptr<Typeface> typeface;
    bool underline = false, strikeOut = false;
};

struct Bitmap : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kBitmap;
    Bitmap() : GdiObject(kKind) {}
    Surface surface;
};

/// Puts an object into the table and gives its handle; null if the table is full (10,000, as on Windows).
HGDIOBJ AddObject(std::unique_ptr<GdiObject> object);
void RemoveObject(GdiObject* object);

/// The system's own from now on: it lives for ever and isn't counted.
void GiveToSystem(HGDIOBJ handle);

/// Null for what is no handle of an object that is there.
GdiObject* ObjectOf(const void* handle);
template <typename Object>
Object* ObjectOf(const void* handle) {
    GdiObject* const object = ObjectOf(handle);
    return object != nullptr && object->kind == Object::kKind ? static_cast<Object*>(object) : nullptr;
}
template <typename Object>
Object* StockObject(int index) {
    return ObjectOf<Object>(GetStockObject(index));
}

/// Objects of a kind in the table, without the system's.
int CountObjectsOf(ObjectKind kind);
