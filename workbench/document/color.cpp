#include "workbench/document/color.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

double Clamp(double value) {
    return value > 0 ? std::min(value, 1.0) : 0.0;
}

Light FourInks(double cyan, double magenta, double yellow, double black) {
    const double rest = 1 - Clamp(black);
    return {(1 - Clamp(cyan)) * rest, (1 - Clamp(magenta)) * rest, (1 - Clamp(yellow)) * rest};
}

double SrgbCurve(double linear) {
    linear = Clamp(linear);
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

/// CIE L*a*b* under D50, through the Bradford-adapted matrix of sRGB (IEC 61966-2-1).
Light Lab(double l, double a, double b) {
    const double fy = (l + 16) / 116;
    const auto f = [](double t) { return t > 6.0 / 29 ? t * t * t : (t - 4.0 / 29) * 3 * 36 / 841; };
    const double x = 0.96422 * f(fy + a / 500);
    const double y = f(fy);
    const double z = 0.82521 * f(fy - b / 200);
    return {SrgbCurve(3.1338561 * x - 1.6168667 * y - 0.4906146 * z),
            SrgbCurve(-0.9787684 * x + 1.9161415 * y + 0.0334540 * z),
            SrgbCurve(0.0719453 * x - 0.2289914 * y + 1.4052427 * z)};
}

Light CustomLight(const HostCustomColor& ink, double tint) {
    const double rest = 1 - Clamp(tint);
    const auto& v = ink.values;
    const auto paler = [rest](Light light) {
        return Light{1 - (1 - light.red) * rest, 1 - (1 - light.green) * rest, 1 - (1 - light.blue) * rest};
    };
    switch (ink.kind) {
        case kCustomFour:
            return FourInks(v[0] * rest, v[1] * rest, v[2] * rest, v[3] * rest);
        case kCustomThree:
            return paler({Clamp(v[0]), Clamp(v[1]), Clamp(v[2])});
        case kCustomLab:
            return paler(Lab(v[0], v[1], v[2]));
        default:
            return paler({1 - Clamp(v[0]), 1 - Clamp(v[0]), 1 - Clamp(v[0])});
    }
}

} // namespace

Light LightOf(const Document& document, const HostColor& color) {
    switch (color.kind) {
        case kColorGray: {
            const double light = 1 - Clamp(color.u.gray.gray);
            return {light, light, light};
        }
        case kColorFour:
            return FourInks(color.u.four.cyan, color.u.four.magenta, color.u.four.yellow, color.u.four.black);
        case kColorThree:
            return {Clamp(color.u.three.red), Clamp(color.u.three.green), Clamp(color.u.three.blue)};
        case kColorCustom: {
            const CustomColor* ink = document.Find(color.u.custom.color);
            return ink ? CustomLight(ink->definition, color.u.custom.tint) : Light{};
        }
        default:
            return {};
    }
}

} // namespace workbench
