/// The small words of SVG and CSS: numbers, lengths, colours, references.
///
/// Nothing here depends on the locale, allocates, or reads past the text it was given.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

inline bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}
std::string_view Trim(std::string_view text);

/// A place in a text that only moves forward.
struct TextCursor {
    const char* at;
    const char* end;

    explicit TextCursor(std::string_view text) : at(text.data()), end(text.data() + text.size()) {}
    bool AtEnd() const { return at == end; }
    char Peek() const { return at == end ? '\0' : *at; }
    std::string_view Rest() const { return {at, static_cast<size_t>(end - at)}; }
    bool Take(char c);
    bool TakeWord(std::string_view word); ///< ASCII case folded
    void SkipBlanks();
    void SkipSeparators(); ///< blanks with at most one comma among them

    /// A number in SVG's compact form: a sign, digits, a dot, an exponent.  The cursor stays where it is if
    /// there is none.  Never infinite, never NaN: what is too large saturates at kLargestNumber.
    bool Number(double* value);

    /// A flag of an arc: one '0' or '1', with or without a blank behind it.
    bool Flag(bool* value);
};

enum class Unit : unsigned char {
    kUser,
    kPixel,
    kPoint,
    kInch,
    kCentimetre,
    kMillimetre,
    kPica,
    kEm,
    kEx,
    kPercent
};

struct Length {
    double value = 0;
    Unit unit = Unit::kUser;
};

/// Takes a number and the unit behind it.  False if there is no number or an unknown unit.
bool TakeLength(TextCursor& cursor, Length* length);
bool ParseLength(std::string_view text, Length* length); ///< the whole text

/// User units (96 to an inch).
/// @param fontSize   user units, for em and ex
/// @param percentOf  what 100 % are, in user units
double ToUserUnits(Length length, double fontSize, double percentOf);

/// Points; exact for lengths that are given in points.  `percentOf` in points, `fontSize` in user units.
double ToPoints(Length length, double fontSize, double percentOf);

/// A list of numbers with blanks or commas between them; what follows the first fault is dropped.
std::vector<double> ParseNumbers(std::string_view text, size_t most);

/// A colour with its alpha, 0 to 1.  Files that name inks (device-cmyk) keep them.
struct ColorValue {
    bool four = false; ///< `channel` is cyan, magenta, yellow, black; else red, green, blue
    double channel[4]{};
    double alpha = 1;
    bool operator==(const ColorValue&) const = default;
};

HostColor ToHostColor(const ColorValue& color);

/// The colour at the cursor: #rgb, #rgba, #rrggbb, #rrggbbaa, rgb(), rgba(), hsl(), hsla(), device-cmyk(),
/// or a name.  False for everything else, with the cursor at an unspecified place.
bool TakeColor(TextCursor& cursor, ColorValue* color);

/// The CSS colour names, ASCII case folded.
std::optional<ColorValue> FindNamedColor(std::string_view name);

/// The id in "url(#id)", with or without quotes; empty if the text is no reference into the same file.
/// The cursor then stands behind the closing parenthesis.
std::string_view TakeReference(TextCursor& cursor);

} // namespace workbench
