#include "workbench/svg/svg_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "workbench/document/document.h"
#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

int HexDigit(char c) {
    if (IsDigit(c)) return c - '0';
    const char lower = Lower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// A number that the library calls out of range is either tiny or huge; which one shows in the text.
double Saturated(std::string_view text) {
    const size_t exponent = text.find_first_of("eE");
    const bool tiny = exponent != std::string_view::npos ? text.substr(exponent + 1).starts_with('-')
                                                         : text.starts_with('0') || text.starts_with('.');
    return tiny ? 0.0 : kLargestNumber;
}

double Clamp01(double value) {
    return std::clamp(value, 0.0, 1.0);
}

bool TakeHexColor(TextCursor& cursor, ColorValue* color) {
    int digits[8];
    int count = 0;
    while (count < 8 && !cursor.AtEnd() && HexDigit(*cursor.at) >= 0)
        digits[count++] = HexDigit(*cursor.at++);
    if (!cursor.AtEnd() && HexDigit(*cursor.at) >= 0) return false;
    const bool isShort = count == 3 || count == 4;
    if (!isShort && count != 6 && count != 8) return false;
    for (int i = 0; i < (isShort ? count : count / 2); ++i) {
        const double value = (isShort ? digits[i] * 17 : digits[2 * i] * 16 + digits[2 * i + 1]) / 255.0;
        (i < 3 ? color->channel[i] : color->alpha) = value;
    }
    return true;
}

/// Up to five numbers between parentheses; `percent` tells which had a percent sign.
int TakeArguments(TextCursor& cursor, double (&values)[5], bool (&percent)[5]) {
    cursor.SkipBlanks();
    if (!cursor.Take('(')) return -1;
    int count = 0;
    for (;;) {
        cursor.SkipSeparators();
        if (cursor.Take('/')) cursor.SkipBlanks();
        if (cursor.Take(')')) return count;
        if (count == 5 || !cursor.Number(&values[count])) return -1;
        percent[count] = cursor.Take('%');
        if (!percent[count]) cursor.TakeWord("deg");
        ++count;
    }
}

double HueToChannel(double low, double high, double hue) {
    hue -= std::floor(hue);
    if (hue * 6 < 1) return low + (high - low) * hue * 6;
    if (hue * 2 < 1) return high;
    if (hue * 3 < 2) return low + (high - low) * (2.0 / 3 - hue) * 6;
    return low;
}

enum class ColorFunction { kRgb, kHsl, kInks };

bool TakeColorFunction(TextCursor& cursor, ColorFunction function, ColorValue* color) {
    double values[5]{};
    bool percent[5]{};
    const int count = TakeArguments(cursor, values, percent);
    const int channels = function == ColorFunction::kInks ? 4 : 3;
    if (count != channels && count != channels + 1) return false;
    if (count == channels + 1)
        color->alpha = Clamp01(percent[channels] ? values[channels] / 100 : values[channels]);
    if (function == ColorFunction::kHsl) {
        const double hue = values[0] / 360, saturation = Clamp01(values[1] / 100),
                     light = Clamp01(values[2] / 100);
        const double high = light <= 0.5 ? light * (1 + saturation) : light + saturation - light * saturation;
        const double low = 2 * light - high;
        color->channel[0] = HueToChannel(low, high, hue + 1.0 / 3);
        color->channel[1] = HueToChannel(low, high, hue);
        color->channel[2] = HueToChannel(low, high, hue - 1.0 / 3);
        return true;
    }
    color->four = function == ColorFunction::kInks;
    const double whole = color->four ? 1 : 255;
    for (int i = 0; i < channels; ++i) color->channel[i] = Clamp01(values[i] / (percent[i] ? 100 : whole));
    return true;
}

/// Points to each unit, in the order of Unit; 0 where it depends on the surroundings.
constexpr double kPointsPerUnit[] = {0.75, 0.75, 1, 72, 72 / 2.54, 7.2 / 2.54, 12, 0, 0, 0};

} // namespace

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool TextCursor::Take(char c) {
    if (at == end || *at != c) return false;
    ++at;
    return true;
}

bool TextCursor::TakeWord(std::string_view word) {
    if (static_cast<size_t>(end - at) < word.size()) return false;
    for (size_t i = 0; i < word.size(); ++i)
        if (Lower(at[i]) != Lower(word[i])) return false;
    at += word.size();
    return true;
}

void TextCursor::SkipBlanks() {
    while (at != end && IsBlank(*at)) ++at;
}

void TextCursor::SkipSeparators() {
    SkipBlanks();
    if (Take(',')) SkipBlanks();
}

bool TextCursor::Number(double* value) {
    const char* start = at;
    const bool negative = start != end && *start == '-';
    if (start != end && (*start == '-' || *start == '+')) ++start;
    const bool digits =
        start != end && (IsDigit(*start) || (*start == '.' && start + 1 != end && IsDigit(start[1])));
    if (!digits) return false;
    double magnitude = 0;
    const auto [stop, error] = std::from_chars(start, end, magnitude);
    if (error == std::errc::result_out_of_range)
        magnitude = Saturated({start, static_cast<size_t>(stop - start)});
    else if (error != std::errc{})
        return false;
    magnitude = std::min(magnitude, kLargestNumber);
    *value = negative ? -magnitude : magnitude;
    at = stop;
    return true;
}

bool TextCursor::Flag(bool* value) {
    if (at == end || (*at != '0' && *at != '1')) return false;
    *value = *at++ == '1';
    return true;
}

bool TakeLength(TextCursor& cursor, Length* length) {
    if (!cursor.Number(&length->value)) return false;
    static constexpr struct {
        std::string_view name;
        Unit unit;
    } kUnits[] = {{"px", Unit::kPixel},      {"pt", Unit::kPoint},      {"in", Unit::kInch},
                  {"cm", Unit::kCentimetre}, {"mm", Unit::kMillimetre}, {"pc", Unit::kPica},
                  {"em", Unit::kEm},         {"ex", Unit::kEx},         {"%", Unit::kPercent}};
    length->unit = Unit::kUser;
    for (const auto& [name, unit] : kUnits) {
        if (!cursor.TakeWord(name)) continue;
        length->unit = unit;
        break;
    }
    return cursor.AtEnd() || IsBlank(*cursor.at) || *cursor.at == ',';
}

bool ParseLength(std::string_view text, Length* length) {
    TextCursor cursor(Trim(text));
    return TakeLength(cursor, length) && cursor.AtEnd();
}

double ToUserUnits(Length length, double fontSize, double percentOf) {
    switch (length.unit) {
        case Unit::kUser:
        case Unit::kPixel:
            return length.value;
        case Unit::kEm:
            return length.value * fontSize;
        case Unit::kEx:
            return length.value * fontSize / 2;
        case Unit::kPercent:
            return length.value / 100 * percentOf;
        default:
            return length.value * kPointsPerUnit[static_cast<int>(length.unit)] / 0.75;
    }
}

double ToPoints(Length length, double fontSize, double percentOf) {
    if (length.unit == Unit::kPercent) return length.value / 100 * percentOf;
    const double factor = kPointsPerUnit[static_cast<int>(length.unit)];
    return factor != 0 ? length.value * factor : ToUserUnits(length, fontSize, 0) * 0.75;
}

std::vector<double> ParseNumbers(std::string_view text, size_t most) {
    std::vector<double> numbers;
    TextCursor cursor(text);
    double value = 0;
    cursor.SkipBlanks();
    while (numbers.size() < most && cursor.Number(&value)) {
        numbers.push_back(value);
        cursor.SkipSeparators();
    }
    return numbers;
}

HostColor ToHostColor(const ColorValue& color) {
    const double* c = color.channel;
    return color.four ? FourColor(c[0], c[1], c[2], c[3]) : ThreeColor(c[0], c[1], c[2]);
}

bool TakeColor(TextCursor& cursor, ColorValue* color) {
    *color = {};
    if (cursor.Take('#')) return TakeHexColor(cursor, color);
    const char* start = cursor.at;
    while (!cursor.AtEnd() && (HexDigit(*cursor.at) >= 0 || Lower(*cursor.at) >= 'a' || *cursor.at == '-') &&
           Lower(*cursor.at) <= 'z')
        ++cursor.at;
    const std::string_view word(start, static_cast<size_t>(cursor.at - start));
    TextCursor name(word);
    const auto is = [&](std::string_view text) {
        return word.size() == text.size() && TextCursor(word).TakeWord(text);
    };
    if (is("rgb") || is("rgba")) return TakeColorFunction(cursor, ColorFunction::kRgb, color);
    if (is("hsl") || is("hsla")) return TakeColorFunction(cursor, ColorFunction::kHsl, color);
    if (is("device-cmyk")) return TakeColorFunction(cursor, ColorFunction::kInks, color);
    if (is("transparent")) {
        color->alpha = 0;
        return true;
    }
    const auto named = FindNamedColor(word);
    if (named) *color = *named;
    return named.has_value();
}

std::string_view TakeReference(TextCursor& cursor) {
    if (!cursor.TakeWord("url(")) return {};
    const std::string_view rest = cursor.Rest();
    const size_t close = rest.find(')');
    if (close == std::string_view::npos) return {};
    cursor.at += close + 1;
    std::string_view text = Trim(rest.substr(0, close));
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front())
        text = Trim(text.substr(1, text.size() - 2));
    return text.starts_with('#') ? text.substr(1) : std::string_view{};
}

} // namespace workbench
