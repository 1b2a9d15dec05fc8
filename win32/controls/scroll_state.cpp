#include "win32/controls/scroll_state.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr int kSmallestThumb = 8;

int64_t Span(const ScrollState& state) {
    return static_cast<int64_t>(state.maximum) - state.minimum;
}

int Lower(int letter) {
    return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter;
}

} // namespace

bool IsSameClass(const char* first, const char* second) {
    while (*first != '\0' && Lower(*first) == Lower(*second)) ++first, ++second;
    return Lower(*first) == Lower(*second);
}

int LastPosition(const ScrollState& state) {
    return static_cast<int>(state.maximum - std::max<int64_t>(static_cast<int64_t>(state.page) - 1, 0));
}

bool CanScroll(const ScrollState& state) {
    return state.minimum < LastPosition(state);
}

int SetScrollState(ScrollState& state, const SCROLLINFO& information) {
    if ((information.fMask & SIF_RANGE) != 0) {
        state.minimum = information.nMin;
        state.maximum = information.nMax;
        // An empty range, and one too wide for an int, is none.
        if (information.nMin > information.nMax || Span(state) >= INT32_MAX)
            state.minimum = state.maximum = 0;
    }
    if ((information.fMask & SIF_PAGE) != 0)
        state.page = static_cast<int>(std::min<int64_t>(information.nPage, INT32_MAX));
    if ((information.fMask & SIF_POS) != 0) state.position = information.nPos;
    state.page = static_cast<int>(std::clamp<int64_t>(state.page, 0, Span(state) + 1));
    state.position = std::max(std::min(state.position, LastPosition(state)), state.minimum);
    if ((information.fMask & SIF_DISABLENOSCROLL) != 0)
        state.arrowsDisabled = !CanScroll(state);
    else if ((information.fMask & (SIF_RANGE | SIF_PAGE)) != 0 && CanScroll(state))
        state.arrowsDisabled = false;
    return state.position;
}

bool GetScrollState(const ScrollState& state, SCROLLINFO& information) {
    if (information.cbSize != sizeof information || (information.fMask & SIF_ALL) == 0) return false;
    if ((information.fMask & SIF_RANGE) != 0) {
        information.nMin = state.minimum;
        information.nMax = state.maximum;
    }
    if ((information.fMask & SIF_PAGE) != 0) information.nPage = static_cast<UINT>(state.page);
    if ((information.fMask & SIF_POS) != 0) information.nPos = state.position;
    if ((information.fMask & SIF_TRACKPOS) != 0)
        information.nTrackPos = state.isTracking ? state.trackPosition : state.position;
    return true;
}

ScrollGeometry MeasureScrollBar(const ScrollState& state, int length, int arrow) {
    ScrollGeometry bar = {length, std::min(arrow, length / 2), 0, 0};
    const int room = length - 2 * bar.arrow;
    bar.thumbStart = bar.arrow;
    if (!CanScroll(state)) return bar;
    bar.thumb = state.page > 0 ? static_cast<int>(static_cast<int64_t>(room) * state.page / (Span(state) + 1))
                               : arrow;
    bar.thumb = std::max(bar.thumb, kSmallestThumb);
    if (bar.thumb >= room) {
        bar.thumb = 0;
        return bar;
    }
    const int position = state.isTracking ? state.trackPosition : state.position;
    const int64_t steps = static_cast<int64_t>(LastPosition(state)) - state.minimum;
    const int64_t step = static_cast<int64_t>(position) - state.minimum;
    bar.thumbStart += static_cast<int>((static_cast<int64_t>(room - bar.thumb) * step + steps / 2) / steps);
    return bar;
}

ScrollPart PartOfBar(const ScrollGeometry& bar, int place) {
    if (place < 0 || place >= bar.length) return ScrollPart::Nothing;
    if (place < bar.arrow) return ScrollPart::FirstArrow;
    if (place >= bar.length - bar.arrow) return ScrollPart::LastArrow;
    if (bar.thumb == 0) return ScrollPart::Nothing;
    if (place < bar.thumbStart) return ScrollPart::BeforeThumb;
    return place < bar.thumbStart + bar.thumb ? ScrollPart::Thumb : ScrollPart::AfterThumb;
}

int PositionOfThumb(const ScrollGeometry& bar, const ScrollState& state, int start) {
    const int64_t room = static_cast<int64_t>(bar.length) - 2 * bar.arrow - bar.thumb;
    if (room <= 0) return state.minimum;
    const int64_t way = std::clamp<int64_t>(start - bar.arrow, 0, room);
    const int64_t steps = static_cast<int64_t>(LastPosition(state)) - state.minimum;
    return static_cast<int>(state.minimum + (way * steps + room / 2) / room);
}

int SetScrollInfo(HWND window, int bar, const SCROLLINFO* information, BOOL redraw) {
    ScrollState* state = bar == SB_CTL ? ScrollStateOf(window) : nullptr;
    if (state == nullptr || information == nullptr || information->cbSize != sizeof *information) return 0;
    const int position = SetScrollState(*state, *information);
    if (redraw) DrawScrollBar(window);
    return position;
}

BOOL GetScrollInfo(HWND window, int bar, SCROLLINFO* information) {
    const ScrollState* state = bar == SB_CTL ? ScrollStateOf(window) : nullptr;
    return state != nullptr && information != nullptr && GetScrollState(*state, *information);
}
