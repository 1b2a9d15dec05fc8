/// Numbers that a plug-in gives: a coordinate that is infinite or no number is nothing that can be drawn.
#pragma once

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "suites/host_types.h"

namespace workbench {

inline bool AllFinite(std::initializer_list<double> values) {
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

inline bool IsFinite(const HostPoint& point) {
    return AllFinite({point.x, point.y});
}

inline bool IsFinite(const HostMatrix& m) {
    return AllFinite({m.a, m.b, m.c, m.d, m.tx, m.ty});
}

} // namespace workbench
