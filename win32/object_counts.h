/// What a program holds of the windows' and drawing's objects at the moment, so that leaks can be seen.
#pragma once

struct ObjectCounts {
    int windows, timers;
    int contexts; ///< taken by GetDC, GetWindowDC, BeginPaint, CreateCompatibleDC and not given back
    int brushes, pens, fonts, bitmaps; ///< without stock and system objects
    bool operator==(const ObjectCounts&) const = default;
};
ObjectCounts CountObjects();
