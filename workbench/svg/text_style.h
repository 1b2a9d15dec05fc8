/// The style of SVG's text as attributes of characters and paragraphs.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <tuple>

#include "workbench/svg/path_data.h"
#include "workbench/svg/text_content.h"

namespace workbench {

/// Makes the attributes of the parts of one text element.  Lengths are in the text space of its frames.
class TextStyles {
public:
    /// @param scale  from user units to text space
    TextStyles(ReadContext& context, double scale) : context_(context), scale_(scale) {}

    /// @param shift    further rise of single letters, in user units, up
    /// @param leading  in text space; 0: by the part's line height
    CharacterStyle StyleFor(const TextPart& part, double shift, double leading, bool area);

    /// Paints whose gradients and patterns lie by the text's own box, which is known at the end.
    /// @param box  in user space
    void Finish(const Box& box);

    /// Of fill and stroke where the parts agree; the others are counted.
    double opacity() const { return opacity_.value_or(1); }
    bool unfinished() const { return !unfinished_.empty(); }

private:
    using Key = std::tuple<const TextPart*, double, double>;
    std::shared_ptr<CharacterAttributes> NewCharacter(const TextPart& part, double shift, double leading);
    void Paint(const TextPart& part, const Box& box, CharacterAttributes* attributes);
    std::shared_ptr<const ParagraphAttributes> ParagraphFor(const TextPart& part,
                                                            const CharacterAttributes& character, bool area);

    ReadContext& context_;
    double scale_;
    std::optional<double> opacity_;
    std::map<Key, CharacterStyle> made_;
    std::map<std::tuple<int, double, double>, std::shared_ptr<const ParagraphAttributes>> paragraphs_;
    struct Unfinished {
        const TextPart* part;
        std::shared_ptr<CharacterAttributes> attributes;
    };
    std::vector<Unfinished> unfinished_;
};

/// A font of the list for what a style wishes; what is missing goes into the report.
std::string FontFor(ReadContext& context, const ComputedStyle& style);

} // namespace workbench
