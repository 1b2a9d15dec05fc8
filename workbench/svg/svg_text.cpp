#include "workbench/svg/svg_text.h"

#include <algorithm>

namespace workbench {
namespace {

void AppendShortPoint(std::string* text, HostPoint point) {
    AppendNumber(text, point.x);
    // A minus sign separates as well as a blank.
    const size_t place = text->size();
    AppendNumber(text, point.y);
    if ((*text)[place] != '-') text->insert(place, 1, ' ');
}

bool Equal(HostPoint a, HostPoint b) {
    return a.x == b.x && a.y == b.y;
}

void AppendPiece(std::string* text, const HostPathSegment& from, const HostPathSegment& to) {
    if (Equal(from.out, from.anchor) && Equal(to.in, to.anchor)) {
        *text += 'L';
        AppendShortPoint(text, to.anchor);
        return;
    }
    *text += 'C';
    for (const HostPoint point : {from.out, to.in, to.anchor}) {
        if (text->back() != 'C') *text += ' ';
        AppendShortPoint(text, point);
    }
}

} // namespace

std::string Escaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\t':
            case '\n':
            case '\r':
                escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
                break;
            default:
                escaped +=
                    static_cast<unsigned char>(c) < 0x20 ? std::string("\xEF\xBF\xBD") : std::string(1, c);
                break;
        }
    }
    return escaped;
}

void AppendAttribute(std::string* markup, std::string_view name, std::string_view value) {
    markup->append(" ").append(name).append("=\"").append(Escaped(value)).append("\"");
}

void AppendOwn(std::string* markup, std::string_view name, std::string_view value) {
    AppendAttribute(markup, "vlq:" + std::string(name), value);
}

std::string PathDataText(const Subpaths& subpaths) {
    std::string text;
    for (const Subpath& subpath : subpaths) {
        const auto& segments = subpath.segments;
        if (segments.empty()) continue;
        text += 'M';
        AppendShortPoint(&text, segments.front().anchor);
        for (size_t i = 1; i < segments.size(); ++i) AppendPiece(&text, segments[i - 1], segments[i]);
        if (!subpath.closed) continue;
        // A straight way back needs no words, unless it has no length and so would be taken for the start.
        const bool straight = Equal(segments.back().out, segments.back().anchor) &&
                              Equal(segments.front().in, segments.front().anchor);
        const bool doubled = segments.size() > 1 && Equal(segments.back().anchor, segments.front().anchor);
        if (!straight || doubled) AppendPiece(&text, segments.back(), segments.front());
        text += 'Z';
    }
    return text;
}

std::string MatrixText(const HostMatrix& m) {
    return "matrix(" + NumbersText(m.a, m.b, m.c, m.d, m.tx, m.ty) + ")";
}

} // namespace workbench
