#include "workbench/document/pattern_space.h"

#include <cmath>
#include <numbers>

#include "workbench/document/matrix.h"

namespace workbench {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

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
        whole = Concat({std::cos(twice), std::sin(twice), std::sin(twice), -std::cos(twice), 0, 0}, whole);
    }
    if (use.shearAngle != 0) {
        whole = Concat(Rotation(-use.shearAxis), whole);
        whole = Concat({1, 0, std::tan(use.shearAngle * kDegree), 1, 0, 0}, whole);
        whole = Concat(Rotation(use.shearAxis), whole);
    }
    if (use.rotation != 0) whole = Concat(Rotation(use.rotation), whole);
    if (use.shiftDistance != 0) {
        const double angle = use.shiftAngle * kDegree;
        whole = Concat({1, 0, 0, 1, use.shiftDistance * std::cos(angle), use.shiftDistance * std::sin(angle)},
                       whole);
    }
    return Concat(use.matrix, whole);
}

} // namespace workbench
