#include "win32/desktop/z_order.h"

#include <algorithm>

namespace {

bool IsTopmost(const Window& window) {
    return IsTopLevel(window) && (window.extendedStyle & WS_EX_TOPMOST) != 0;
}

size_t PlaceOf(const std::vector<Window*>& order, const Window* window) {
    return static_cast<size_t>(std::find(order.begin(), order.end(), window) - order.begin());
}

size_t CountTopmost(const std::vector<Window*>& order) {
    return static_cast<size_t>(
        std::count_if(order.begin(), order.end(), [](auto* each) { return IsTopmost(*each); }));
}

void SetTopmost(Window& window, bool topmost) {
    if (!IsTopLevel(window)) return;
    if (topmost) {
        window.extendedStyle |= WS_EX_TOPMOST;
    } else {
        window.extendedStyle &= ~WS_EX_TOPMOST;
    }
    for (Window* owned : OwnedWindows(window)) SetTopmost(*owned, topmost);
}

// Where a window that isn't in the order is to stand, by what was asked for alone.
size_t WantedPlace(const std::vector<Window*>& order, const Window& window, HWND behind) {
    if (behind == HWND_BOTTOM) return order.size();
    if (behind == HWND_TOP || behind == HWND_TOPMOST || behind == HWND_NOTOPMOST) return 0;
    const size_t place = PlaceOf(order, WindowIfAny(behind));
    return place < order.size() && order[place] != &window ? place + 1 : 0;
}

void RaiseOwned(std::vector<Window*>& order, Window& owner) {
    for (Window* owned : OwnedWindows(owner)) {
        const size_t place = PlaceOf(order, &owner);
        const size_t current = PlaceOf(order, owned);
        if (current <= place) continue;
        order.erase(order.begin() + static_cast<ptrdiff_t>(current));
        order.insert(order.begin() + static_cast<ptrdiff_t>(place), owned);
        RaiseOwned(order, *owned);
    }
}

} // namespace

std::vector<Window*> OwnedWindows(const Window& owner) {
    std::vector<Window*> owned;
    for (Window* window : DesktopWindow().children)
        if (window->owner == owner.handle) owned.push_back(window);
    return owned;
}

bool PlaceInOrder(Window& window, HWND behind) {
    std::vector<Window*>& order = window.parent->children;
    const std::vector<Window*> before = order;
    const DWORD styleBefore = window.extendedStyle;
    if (behind == HWND_NOTOPMOST && !IsTopmost(window)) return false;
    const Window* owner = WindowIfAny(window.owner);
    if (behind == HWND_TOPMOST || (owner != nullptr && IsTopmost(*owner))) {
        SetTopmost(window, true);
    } else if (behind == HWND_NOTOPMOST || behind == HWND_BOTTOM) {
        SetTopmost(window, false);
    }
    std::erase(order, &window);
    size_t place = WantedPlace(order, window, behind);
    if (IsTopLevel(window)) {
        // Owned windows change with their owner and may still stand among the others.
        std::stable_partition(order.begin(), order.end(), [](auto* each) { return IsTopmost(*each); });
        const size_t topmost = CountTopmost(order);
        place = IsTopmost(window) ? std::min(place, topmost) : std::max(place, topmost);
        place = std::min(place, PlaceOf(order, WindowIfAny(window.owner)));
    }
    order.insert(order.begin() + static_cast<ptrdiff_t>(place), &window);
    if (IsTopLevel(window)) RaiseOwned(order, window);
    return order != before || window.extendedStyle != styleBefore;
}
