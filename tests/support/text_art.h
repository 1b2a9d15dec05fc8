/// Text frames and fonts for tests.
#pragma once

#include <string>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/document/fonts.h"
#include "workbench/document/story.h"

/// Fonts by hand, in the order in which they are added.
class TestFonts : public workbench::FontList {
public:
    /// Words 3 to 14 are `firstClass`, `firstClass` + 1 and so on.
    void Add(std::string name, int32_t firstClass = 0);
    size_t Count() override { return fonts_.size(); }
    const workbench::FontEntry& At(size_t index) override { return fonts_[index]; }

private:
    std::vector<workbench::FontEntry> fonts_;
};

/// The fonts that the attributes below name, and others: "Sans-Regular", "Ryumin-KL" of classes from 100 on.
TestFonts FewFonts();

workbench::TextFrameData& TextOf(workbench::Art& frame);
const workbench::TextFrameData& TextOf(const workbench::Art& frame);

/// Point text at a place, in the attributes of a new story.
workbench::Art& AddPointText(workbench::Document& document, workbench::Art& parent, std::u16string_view text,
                             HostPoint anchor = {0, 0});

/// Text in an area or on a path: a triangle of the size of `side`, its lower left corner at `corner`.
workbench::Art& AddPathText(workbench::Document& document, workbench::Art& parent, int32_t frameKind,
                            std::u16string_view text, HostPoint corner, double side);

/// Attributes none of which has the value that a new story's has, all such that a record keeps them.
workbench::CharacterAttributes OddCharacter();
workbench::ParagraphAttributes OddParagraph();

void SetCharacter(workbench::Art& frame, size_t first, size_t end,
                  const workbench::CharacterAttributes& attributes);
void SetParagraph(workbench::Art& frame, size_t first, size_t end,
                  const workbench::ParagraphAttributes& attributes);
