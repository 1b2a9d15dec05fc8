/// Affine maps: x' = a x + c y + tx, y' = b x + d y + ty.
#pragma once

#include "suites/host_types.h"

namespace workbench {

inline HostPoint Apply(const HostMatrix& m, const HostPoint& p) {
    return {m.a * p.x + m.c * p.y + m.tx, m.b * p.x + m.d * p.y + m.ty};
}

/// First `inner`, then `outer`.
inline HostMatrix Concat(const HostMatrix& outer, const HostMatrix& inner) {
    const HostPoint moved = Apply(outer, {inner.tx, inner.ty});
    return {outer.a * inner.a + outer.c * inner.b,
            outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d,
            outer.b * inner.c + outer.d * inner.d,
            moved.x,
            moved.y};
}

} // namespace workbench
