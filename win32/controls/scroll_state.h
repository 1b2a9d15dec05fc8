/// What a scroll bar knows of what it scrolls, and where its parts lie.
#pragma once

#include <windows.h>

struct ScrollState {
    int minimum = 0;
    int maximum = 100;
    int page = 0; ///< 0: a thumb of fixed size
    int position = 0;
    int trackPosition = 0; ///< of the thumb while it is dragged
    bool isTracking = false;
    bool arrowsDisabled = false; ///< nothing to scroll, and told to show it so
};

/// Puts range, page and position in, as Windows clamps them, and gives the position.
int SetScrollState(ScrollState& state, const SCROLLINFO& information);

/// Gives what the mask asks for; false for a structure of another size or an empty mask.
bool GetScrollState(const ScrollState& state, SCROLLINFO& information);

int LastPosition(const ScrollState& state); ///< the largest that the page leaves
bool CanScroll(const ScrollState& state);

/// The parts of a bar along its length, in pixels.
struct ScrollGeometry {
    int length;
    int arrow;      ///< of each arrow button
    int thumbStart; ///< from the bar's start
    int thumb;      ///< 0: none
};
ScrollGeometry MeasureScrollBar(const ScrollState& state, int length,
                                int arrow); ///< arrow: where there is room

enum class ScrollPart { Nothing, FirstArrow, BeforeThumb, Thumb, AfterThumb, LastArrow };
ScrollPart PartOfBar(const ScrollGeometry& bar, int place);

/// The position that the thumb stands for with its start at `start`.
int PositionOfThumb(const ScrollGeometry& bar, const ScrollState& state, int start);

/// The state of a scroll bar control; null for any other window.
ScrollState* ScrollStateOf(HWND window);
void DrawScrollBar(HWND window); ///< at once

/// Class names are compared without case.
bool IsSameClass(const char* first, const char* second);
