#include "workbench/render/text_drawing.h"

#include "workbench/document/story.h"
#include "workbench/text/frame_layout.h"
#include "workbench/text/glyph_outlines.h"

namespace workbench {

void DrawLetters(cairo_t* context, const Document& document, const Art& frame,
                 const std::function<void(const HostPathStyle&)>& paint) {
    // Long paths take long to fill, and letters hardly ever overlap.
    constexpr size_t kMostAtOnce = 100;
    const FrameLayout layout = LayFrame(document, frame);
    const auto& letters = layout.letters;
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_WINDING);
    for (size_t first = 0; first < letters.size();) {
        cairo_new_path(context);
        size_t end = first;
        while (end < letters.size() && end - first < kMostAtOnce &&
               letters[end].style == letters[first].style) {
            AppendGlyph(context, letters[end].font.get(), letters[end].glyph, letters[end].toArt);
            ++end;
        }
        paint(PaintOf(*letters[first].style));
        first = end;
    }
    cairo_new_path(context);
}

} // namespace workbench
