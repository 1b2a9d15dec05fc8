#include "workbench/suites/color_check.h"

#include "workbench/suites/finite.h"

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

const void* HandleIn(const HostColor& color) {
    switch (color.kind) {
        case kColorPattern:
            return color.u.pattern.pattern;
        case kColorCustom:
            return color.u.custom.color;
        case kColorGradient:
            return color.u.gradient.gradient;
        default:
            return nullptr;
    }
}

bool IsFiniteColor(const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return std::isfinite(color.u.gray.gray);
        case kColorFour: {
            const auto& four = color.u.four;
            return AllFinite({four.cyan, four.magenta, four.yellow, four.black});
        }
        case kColorThree:
            return AllFinite({color.u.three.red, color.u.three.green, color.u.three.blue});
        case kColorCustom:
            return std::isfinite(color.u.custom.tint);
        case kColorGradient: {
            const auto& use = color.u.gradient;
            return IsFinite(use.matrix) && AllFinite({use.origin.x, use.origin.y, use.angle, use.length,
                                                      use.highlightAngle, use.highlightLength});
        }
        case kColorPattern: {
            const auto& use = color.u.pattern;
            return IsFinite(use.matrix) &&
                   AllFinite({use.shiftDistance, use.shiftAngle, use.scale.x, use.scale.y, use.rotation,
                              use.reflectAngle, use.shearAngle, use.shearAxis});
        }
        default:
            return false;
    }
}

} // namespace

HostError CheckColor(SuiteCall& call, const HostColor& color) {
    if (color.kind < kColorGray || color.kind > kColorThree || !IsFiniteColor(color))
        return kHostBadParameter;
    if (call.document().Knows(color)) return kHostNoError;
    const void* handle = HandleIn(color);
    if (!handle) return call.FaultUnlessRefused(kHostBadHandle, "a colour that names nothing");
    return call.Fault(kHostBadHandle, "a colour that names " + BadHandleText("paint", handle));
}

} // namespace workbench
