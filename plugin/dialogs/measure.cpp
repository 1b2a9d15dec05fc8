#include "plugin/dialogs/measure.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"

namespace {

constexpr MeasureUnit kPoint = {"pt", "pt", 1.0};
constexpr MeasureUnit kUnits[] = {
    {"in", "in", 72.0},
    {"cm", "cm", 28.346456692913385},
    kPoint,
    {"p0", "pc", 12.0},
    {"mm", "mm", 2.8346456692913384},
    {"px", "px", 1.0},
    {"H", "H", 0.7086614173228346}, // a quarter of a millimetre
};
constexpr int32_t kHostsPrecision = -1;

} // namespace

const MeasureUnit& UnitOfRulerText(const char* rulerText) {
    for (const MeasureUnit& unit : kUnits) {
        if (std::string_view(rulerText).ends_with(unit.rulerEnd)) return unit;
    }
    return kPoint;
}

const MeasureUnit& CurrentRulerUnit() {
    const HostString string;
    char text[kHostStringCapacity] = "";
    if (string.get() != nullptr &&
        UserSuite().FormatRulerLength(0.0, kHostsPrecision, string.get()) == kHostNoError)
        HostStringBytes(string.get(), kEncodingCp932, text);
    return UnitOfRulerText(text);
}

void FormatMeasureIn(const MeasureUnit& unit, double points, char* text) {
    std::snprintf(text, kMeasureBytes, "%g %s", points / unit.points, unit.name);
}

double ParseMeasureIn(const MeasureUnit& unit, const char* text) {
    char number[kMeasureBytes];
    std::string_view rest = std::string_view(text).substr(0, kMeasureBytes - 1);
    const MeasureUnit* named = &unit;
    for (const MeasureUnit& other : kUnits) {
        if (!rest.ends_with(other.name)) continue;
        rest.remove_suffix(std::string_view(other.name).size());
        named = &other;
        break;
    }
    number[rest.copy(number, rest.size())] = '\0';
    const double points = std::strtod(number, nullptr) * named->points;
    return std::isfinite(points) ? points : 0.0;
}

void FormatMeasure(double points, char* text) {
    FormatMeasureIn(CurrentRulerUnit(), points, text);
}

void ParseMeasure(const char* text, double* points) {
    *points = ParseMeasureIn(CurrentRulerUnit(), text);
}
