/// Gradients and patterns of SVG as paints of the document.
#pragma once

#include "workbench/svg/path_data.h"
#include "workbench/svg/read_context.h"

namespace workbench {

/// What fill or stroke comes to.
struct Paint {
    bool painted = false;
    HostColor color{};
    double opacity = 1; ///< of the paint as a whole
};

/// Resolves what a fill or a stroke names.
/// @param here  of the painted element: its style is computed
/// @param box   the exact extent of its outlines in user space, for units of the bounding box
Paint ResolvePaint(ReadContext& context, const PaintValue& value, double opacity, const Surroundings& here,
                   const Box& box);

/// The maker of each kind of server.  Not painted if there is nothing to paint with: no stops, no tile, an
/// empty box.
Paint GradientPaint(ReadContext& context, pugi::xml_node element, bool radial, const Surroundings& here,
                    const Box& box);
Paint PatternPaint(ReadContext& context, pugi::xml_node element, const Surroundings& here, const Box& box);

/// An element with those that it refers to by href, in order: each gives what those before it don't say.
class ServerChain {
public:
    ServerChain(ReadContext& context, pugi::xml_node element);

    /// The first value of an attribute; empty if nobody has it.
    std::string_view Value(const char* name) const;
    bool Has(const char* name) const;
    Length LengthOf(const char* name, Length absent) const;

    /// The first of them that has members for which `wanted` holds; null if none.
    template <typename Wanted>
    pugi::xml_node FirstWith(Wanted&& wanted) const {
        for (const pugi::xml_node link : links_)
            for (const pugi::xml_node child : link.children())
                if (wanted(child)) return link;
        return {};
    }

private:
    std::vector<pugi::xml_node> links_;
};

} // namespace workbench
