#include "win32/controls/edit_text.h"

#include <algorithm>

#include "win32/codepage_932.h"

namespace {

enum class Kind { Blank, Single, Double };

size_t StepBytes(std::string_view rest) {
    if (rest.substr(0, 2) == "\r\n") return 2;
    return Cp932UnitBytes(rest);
}

Kind KindAt(std::string_view text, size_t place) {
    const std::string_view rest = text.substr(place);
    if (rest[0] == ' ' || rest[0] == '\t' || rest[0] == '\r' || rest[0] == '\n') return Kind::Blank;
    if (Cp932UnitBytes(rest) == 1) return Kind::Single;
    return rest.substr(0, 2) == "\x81\x40" ? Kind::Blank : Kind::Double;
}

// How much of a line's `room` bytes that fit stays on it.
size_t BreakWithin(std::string_view line, size_t room) {
    size_t best = 0;
    for (size_t place = 0; place < line.size();) {
        const Kind kind = KindAt(line, place);
        const size_t next = place + StepBytes(line.substr(place));
        if (kind == Kind::Blank) {
            // Blanks stay on the line even where they lie outside of it.
            if (place > room) break;
            best = next;
        } else {
            if (next > room) break;
            if (kind == Kind::Double || (next < line.size() && KindAt(line, next) == Kind::Double))
                best = next;
        }
        place = next;
    }
    if (best > 0) return best;
    const size_t whole = WholePlace(line, room);
    return whole > 0 ? whole : StepBytes(line);
}

} // namespace

size_t SelectionStart(const EditText& edit) {
    return std::min(edit.anchor, edit.caret);
}

size_t SelectionEnd(const EditText& edit) {
    return std::max(edit.anchor, edit.caret);
}

std::string SelectedText(const EditText& edit) {
    return edit.text.substr(SelectionStart(edit), SelectionEnd(edit) - SelectionStart(edit));
}

size_t NextPlace(std::string_view text, size_t place) {
    return place >= text.size() ? text.size() : place + StepBytes(text.substr(place));
}

size_t WholePlace(std::string_view text, size_t byte) {
    // Whether a byte begins a character shows only from the text's start on.
    size_t place = 0;
    while (place < text.size()) {
        const size_t next = NextPlace(text, place);
        if (next > byte) break;
        place = next;
    }
    return place;
}

size_t PreviousPlace(std::string_view text, size_t place) {
    return place == 0 ? 0 : WholePlace(text, place - 1);
}

size_t NextWord(std::string_view text, size_t place) {
    if (place >= text.size()) return text.size();
    const Kind kind = KindAt(text, place);
    while (place < text.size() && kind != Kind::Blank && KindAt(text, place) == kind)
        place = NextPlace(text, place);
    while (place < text.size() && KindAt(text, place) == Kind::Blank) place = NextPlace(text, place);
    return place;
}

size_t PreviousWord(std::string_view text, size_t place) {
    size_t start = 0;
    for (size_t word = 0; word < place; word = NextWord(text, word)) start = word;
    return start;
}

bool ReplaceSelection(EditText& edit, std::string_view with, bool limited) {
    const size_t start = SelectionStart(edit), end = SelectionEnd(edit);
    const size_t kept = edit.text.size() - (end - start);
    const size_t room = edit.limit > kept ? edit.limit - kept : 0;
    const bool fits = !limited || with.size() <= room;
    if (!fits) with = with.substr(0, WholePlace(with, room));
    edit.text.replace(start, end - start, with);
    // What stood behind a stray lead byte may have become a part of it.
    edit.caret = WholePlace(edit.text, start + with.size());
    edit.anchor = edit.caret;
    return fits;
}

std::vector<EditLine> BreakLines(std::string_view text, const TextFit* fit) {
    std::vector<EditLine> lines;
    size_t start = 0;
    while (true) {
        const size_t found = text.find("\r\n", start);
        const size_t end = found == std::string_view::npos ? text.size() : found;
        while (fit != nullptr && start < end) {
            const std::string_view rest = text.substr(start, end - start);
            const size_t room = fit->BytesThatFit(rest);
            if (room >= rest.size()) break;
            const size_t taken = BreakWithin(rest, room);
            if (taken >= rest.size()) break;
            lines.push_back({start, start + taken});
            start += taken;
        }
        lines.push_back({start, end});
        if (found == std::string_view::npos) return lines;
        start = found + 2;
    }
}

size_t LineOfPlace(const std::vector<EditLine>& lines, size_t place) {
    size_t line = 0;
    while (line + 1 < lines.size() && lines[line + 1].start <= place) ++line;
    return line;
}
