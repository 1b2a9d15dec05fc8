/// The text of an edit control with its selection: no window, no drawing.
///
/// Places are bytes from the text's start and always lie between whole characters: never within a double-byte
/// one, nor between the CR and LF of a line's end.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct EditText {
    std::string text;     ///< cp932
    size_t anchor = 0;    ///< where the selection was begun
    size_t caret = 0;     ///< where it ends
    size_t limit = 30000; ///< bytes that typing and pasting may fill
};

size_t SelectionStart(const EditText& edit);
size_t SelectionEnd(const EditText& edit);
std::string SelectedText(const EditText& edit);

/// The next place to the right or left, or the same one at the end and the start.
size_t NextPlace(std::string_view text, size_t place);
size_t PreviousPlace(std::string_view text, size_t place);
/// The nearest place at or before `byte`.
size_t WholePlace(std::string_view text, size_t byte);

/// Where the next word begins, and where this one or the one before did.  Blanks part words, and so does a
/// change between single-byte and double-byte characters.
size_t NextWord(std::string_view text, size_t place);
size_t PreviousWord(std::string_view text, size_t place);

/// Puts text in place of the selection and the caret behind it.  False if the limit cut it, at a whole
/// character.
bool ReplaceSelection(EditText& edit, std::string_view with, bool limited);

/// One line as it is shown: its bytes without the CR LF.
struct EditLine {
    size_t start;
    size_t end;
};

/// Tells how many bytes of a text, whole characters, fit into the width of a line.
class TextFit {
public:
    virtual ~TextFit() = default;
    virtual size_t BytesThatFit(std::string_view text) const = 0;
};

/// The lines of a text, at least one.  With `fit` long ones go on below: broken behind blanks, which may hang
/// over, beside double-byte characters, or where there is neither, wherever they must.
std::vector<EditLine> BreakLines(std::string_view text, const TextFit* fit);

/// The line that a place stands on; where a line goes on below, its end belongs to the next one.
size_t LineOfPlace(const std::vector<EditLine>& lines, size_t place);
