#include "workbench/document/pattern_space.h"

#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

/// First `inner`, then `outer`.
HostMatrix Then(const HostMatrix& inner, const HostMatrix& outer) {
    return {outer.a * inner.a + outer.c * inner.b,
            outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d,
            outer.b * inner.c + outer.d * inner.d,
            outer.a * inner.tx + outer.c * inner.ty + outer.tx,
            outer.b * inner.tx + outer.d * inner.ty + outer.ty};
}

HostMatrix Rotation(double degrees) {
    const double angle = degrees * kDegree;
    return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0};
}

} // namespace

HostMatrix PatternToArt(const HostPatternUse& use) {
    HostMatrix whole{1, 0, 0, 1, 0, 0};
    if (use.scale.x != 0 && use.scale.y != 0) whole = {use.scale.x, 0, 0, use.scale.y, 0, 0};
    if (use.reflect) {
        const double twice = 2 * use.reflectAngle * kDegree;
        whole = Then(whole, {std::cos(twice), std::sin(twice), std::sin(twice), -std::cos(twice), 0, 0});
    }
    if (use.shearAngle != 0) {
        whole = Then(whole, Rotation(-use.shearAxis));
        whole = Then(whole, {1, 0, std::tan(use.shearAngle * kDegree), 1, 0, 0});
        whole = Then(whole, Rotation(use.shearAxis));
    }
    if (use.rotation != 0) whole = Then(whole, Rotation(use.rotation));
    if (use.shiftDistance != 0) {
        const double angle = use.shiftAngle * kDegree;
        whole = Then(whole,
                     {1, 0, 0, 1, use.shiftDistance * std::cos(angle), use.shiftDistance * std::sin(angle)});
    }
    return Then(whole, use.matrix);
}

} // namespace workbench
