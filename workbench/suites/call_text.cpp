#include "workbench/suites/call_text.h"

#include <cinttypes>
#include <cstdio>

#include "workbench/suites/host_state.h"

namespace workbench {

namespace {

template <typename... Arguments>
std::string Printed(const char* format, Arguments... arguments) {
    char text[160];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
}

} // namespace

std::string HandleText(const void* handle) {
    return handle ? Printed("0x%" PRIxPTR, reinterpret_cast<uintptr_t>(handle)) : "none";
}

std::string BadHandleText(const char* what, const void* handle) {
    return HandleText(handle) + " is no living " + what;
}

std::string ErrorText(HostError error) {
    switch (error) {
        case kHostNoError:
            return "done";
        case kHostSuiteNotFound:
            return "suite not found";
        case kHostOutOfMemory:
            return "out of memory";
        case kHostBadParameter:
            return "bad parameter";
        case kHostBadHandle:
            return "bad handle";
        case kHostBadArt:
            return "bad art";
        case kHostBadPlace:
            return "bad place";
        case kHostNotFound:
            return "not found";
        case kHostRefused:
            return "refused";
        default:
            return std::to_string(error);
    }
}

std::string TextText(UnicodeStringHandle text) {
    const HostState* host = CurrentState();
    const void* found =
        host ? host->handles.Find(HandleType::kText, reinterpret_cast<uintptr_t>(text)) : nullptr;
    if (!found) return HandleText(text);
    return HandleText(text) + ' ' + QuotedText(static_cast<const HostText*>(found)->utf8.c_str());
}

std::string NumberText(double number) {
    return Printed("%.17g", number);
}

std::string QuotedText(const char* text) {
    if (!text) return "null";
    constexpr size_t kLongest = 40;
    std::string quoted = "\"";
    for (const char* c = text; *c; ++c) {
        if (quoted.size() > kLongest) return quoted + "...\"";
        if (*c == '\n' || *c == '\r')
            quoted += *c == '\n' ? "\\n" : "\\r";
        else
            quoted += *c;
    }
    return quoted + '"';
}

std::string ValueText(const HostPoint& point) {
    return Printed("(%g, %g)", point.x, point.y);
}

std::string ValueText(const HostRect& rect) {
    return Printed("(%g, %g, %g, %g)", rect.left, rect.top, rect.right, rect.bottom);
}

std::string ValueText(const HostMatrix& m) {
    return Printed("[%g %g %g %g %g %g]", m.a, m.b, m.c, m.d, m.tx, m.ty);
}

std::string ValueText(const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return Printed("gray %g", color.u.gray.gray);
        case kColorFour:
            return Printed("four %g %g %g %g", color.u.four.cyan, color.u.four.magenta, color.u.four.yellow,
                           color.u.four.black);
        case kColorThree:
            return Printed("three %g %g %g", color.u.three.red, color.u.three.green, color.u.three.blue);
        case kColorCustom:
            return "custom " + HandleText(color.u.custom.color) + Printed(" tint %g", color.u.custom.tint);
        case kColorPattern:
            return "pattern " + HandleText(color.u.pattern.pattern);
        case kColorGradient:
            return "gradient " + HandleText(color.u.gradient.gradient);
        default:
            return "colour of kind " + std::to_string(color.kind);
    }
}

std::string ValueText(const HostPathSegment& segment) {
    return "{" + ValueText(segment.anchor) + " " + ValueText(segment.in) + " " + ValueText(segment.out) + "}";
}

std::string ValueText(const HostPathStyle& style) {
    std::string text = "{fill ";
    text += style.fillPaint ? ValueText(style.fill) : "none";
    text += ", stroke ";
    text += style.strokePaint ? ValueText(style.stroke) + Printed(" %g wide", style.lineWidth) : "none";
    return text + (style.clip ? ", clips}" : "}");
}

std::string ValueText(const HostGradientStop& stop) {
    return "{" + Printed("%g ", stop.location) + ValueText(stop.color) +
           Printed(" midpoint %g opacity %g}", stop.midpoint, stop.opacity);
}

std::string ValueText(const HostCustomColor& color) {
    return Printed("{kind %d: %g %g %g %g, flags %d}", color.kind, color.values[0], color.values[1],
                   color.values[2], color.values[3], color.flags);
}

std::string ValueText(const HostDrawData& data) {
    return "{art " + HandleText(data.art) + ", port " + HandleText(data.port) + ", origin " +
           ValueText(data.origin) + ", " + ValueText(data.matrix) + "}";
}

std::string ValueText(const HostPlaceRequest& request) {
    return "{mode " + std::to_string(request.mode) + ", file " + HandleText(request.file) + ", new art " +
           HandleText(request.newArt) + "}";
}

std::string ValueText(const HostRasterRecord& record) {
    return Printed("{(%d, %d, %d, %d), space %d, %d bits, flags %u}", record.left, record.top, record.right,
                   record.bottom, record.colorSpace, record.bitsPerPixel, record.flags);
}

std::string ValueText(const HostTileSlice& slice) {
    return Printed("(%d, %d, %d, %d; %d to %d)", slice.left, slice.top, slice.right, slice.bottom,
                   slice.front, slice.back);
}

std::string ValueText(const HostTile& tile) {
    return Printed("{%d bytes a pixel, %d a row}", tile.columnBytes, tile.rowBytes);
}

std::string ValueText(const HostFontRecord& record) {
    return Printed("{classes %d %d %d}", record.words[2], record.words[3], record.words[4]);
}

std::string ValueText(const HostTextDash& dash) {
    return Printed("{%d dashes from %g}", dash.count, dash.offset);
}

std::string ValueText(const HostSize& size) {
    return NumberText(size.width) + " x " + NumberText(size.height);
}

} // namespace workbench
