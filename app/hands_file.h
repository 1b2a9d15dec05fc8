/// A file of hands: what a user does at a desktop without a screen, one step a line.
///
/// Blank lines and what follows a # are passed over.  Numbers are whole; places are pixels of the desktop
/// from its left top corner; a text stands in double quotes, in which \" and \\ are a quote and a backslash.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class Hand {
    kMove,        ///< x y
    kPress,       ///< the left button, where the pointer is
    kRelease,     ///< the same
    kClick,       ///< x y
    kDoubleClick, ///< x y
    kDrag,        ///< x1 y1 x2 y2 steps
    kWheel,       ///< notches, positive: away from the user
    kKey,         ///< a name: Return, Control+A, Shift+Tab ...
    kType,        ///< a text
    kPause,       ///< milliseconds of the desktop's own clock
    kPicture,     ///< a name: a PNG of the whole desktop
    kPickFlyout,  ///< number of an entry of the panel's flyout
    kPickMenu,    ///< a title of the menu bar, and the text of an item of its menu or submenus
    kAnswer,      ///< yes (also "Save" and OK), no or cancel, to the question that stands
    kControl,     ///< number of a child of the panel; a click in its middle
    kControlAt,   ///< number, x y within it; a click there
    kDoubleControlAt,
    kDialog ///< number of a child of the active window; a click in its middle
};

struct HandStep {
    int line = 0; ///< from 1
    Hand hand = Hand::kMove;
    std::vector<int> numbers;
    std::vector<std::string> texts; ///< UTF-8
    int key = 0, modifier = 0;      ///< virtual keys; no modifier: 0
};

/// Nothing, and "line 3: ..." in *error, if any line is no step.
std::optional<std::vector<HandStep>> ParseHands(std::string_view text, std::string* error);
