#include "app/format_text_losses.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "app/format_losses.h"
#include "workbench/document/story.h"
#include "workbench/text/font_config_list.h"

using workbench::CharacterAttributes;
using workbench::CharacterStyle;
using workbench::ParagraphAttributes;
using workbench::Story;
using workbench::TextFrameData;

namespace {

constexpr size_t kBytesOfRun = 254;
constexpr UINT kCp932 = 932;

/// The bytes of a unit in a record; 0 for the second half of a pair, whose first half stands for both.
int StoredBytes(char16_t unit, char* bytes) {
    if (unit >= 0xDC00 && unit < 0xE000) return 0;
    BOOL lost = FALSE;
    const int count =
        unit == 0 || (unit >= 0xD800 && unit < 0xE000)
            ? 0
            : WideCharToMultiByte(kCp932, WC_NO_BEST_FIT_CHARS, &unit, 1, bytes, 2, nullptr, &lost);
    if (count > 0 && !lost) return count;
    bytes[0] = '?';
    return 1;
}

char16_t StoredUnit(const char* bytes, int count) {
    char16_t unit = u'?';
    return MultiByteToWideChar(kCp932, 0, bytes, count, &unit, 1) == 1 ? unit : u'?';
}

class TextLosses {
public:
    TextLosses(Story& story, std::map<std::string, int>* counts) : story_(story), counts_(*counts) {}

    void KeepCp932() {
        for (size_t at = 0; at < story_.text.size();) {
            char bytes[2];
            const int count = StoredBytes(story_.text[at], bytes);
            if (count == 0) {
                workbench::RemoveText(story_, at, at + 1);
                continue;
            }
            const char16_t stored = StoredUnit(bytes, count);
            if (stored != story_.text[at]) ++counts_["letter outside of cp932"];
            story_.text[at++] = stored;
        }
    }

    /// Kerning goes with a run, and neighbours of equal attributes and kerning are one run.
    void KeepKerningOfRuns() {
        auto& kerning = story_.kerning;
        if (story_.text.empty() && !kerning.empty()) {
            ++counts_["kerning without text"];
            kerning.clear();
        }
        const std::map<size_t, int32_t> all = kerning;
        size_t bytes = 0;
        for (size_t at = 0; at < story_.text.size(); ++at) {
            char stored[2];
            const auto width = static_cast<size_t>(StoredBytes(story_.text[at], stored));
            const auto found = all.find(at);
            const auto before = at > 0 ? all.find(at - 1) : all.end();
            const bool same = at > 0 && found != all.end() && before != all.end() &&
                              found->second == before->second && SameStyle(at - 1, at);
            const bool begins = !same || bytes + width > kBytesOfRun;
            bytes = begins ? width : bytes + width;
            if (begins) continue;
            ++counts_["kerning of a letter like that of the one before"];
            kerning.erase(at);
        }
        KeepEnd();
    }

    CharacterAttributes Kept(CharacterAttributes character) {
        const auto& fonts = workbench::TextFonts();
        if (const auto index = fonts.Find(character.font)) {
            const std::string name = const_cast<workbench::FontConfigList&>(fonts).At(*index).name;
            if (name != character.font && !character.font.empty()) ++counts_["missing font"];
            character.font = name;
        }
        if (!character.autoLeading && character.leading == 0) {
            ++counts_["leading of 0"];
            character.autoLeading = true;
        }
        for (HostColor* color : {&character.fillColor, &character.strokeColor}) {
            if (color->kind != kColorGradient) continue;
            ++counts_["gradient on text"];
            *color = workbench::GrayColor(0);
        }
        if (std::abs(character.tracking) > 32767) {
            ++counts_["number beyond Fixed"];
            character.tracking = std::clamp(character.tracking, -32767, 32767);
        }
        for (double* scale : {&character.horizontalScale, &character.verticalScale}) {
            if (std::abs(*scale) >= 0.01) continue;
            ++counts_["scale of no letters"];
            *scale = 1;
        }
        for (double* number : {&character.fontSize, &character.leading, &character.baselineShift,
                               &character.lineWidth, &character.miterLimit, &character.dashOffset})
            ClampNumber(number);
        for (double& dash : character.dashes) ClampNumber(&dash);
        return character;
    }

    ParagraphAttributes Kept(ParagraphAttributes paragraph) {
        KeepKinsoku(&paragraph);
        if (paragraph.justification == 4 || paragraph.justification == 5) {
            ++counts_["justification's last line"];
            paragraph.justification = 6;
        }
        if (paragraph.hangingRoman != (paragraph.burasagari != 0)) {
            ++counts_["hanging roman"];
            paragraph.hangingRoman = paragraph.burasagari != 0;
        }
        if (paragraph.autoLeading != 1.2) {
            ++counts_["auto leading's share"];
            paragraph.autoLeading = 1.2;
        }
        for (double* number : {&paragraph.firstLineIndent, &paragraph.startIndent, &paragraph.endIndent})
            ClampNumber(number);
        return paragraph;
    }

private:
    bool SameStyle(size_t a, size_t b) const {
        return story_.styles[a].character == story_.styles[b].character &&
               story_.styles[a].paragraph == story_.styles[b].paragraph;
    }

    /// A last run of one return with kerning is how a record holds the kerning at the text's end.
    void KeepEnd() {
        auto& kerning = story_.kerning;
        const size_t size = story_.text.size();
        if (size == 0 || kerning.contains(size) || story_.text.back() != u'\r') return;
        const auto own = kerning.find(size - 1);
        if (own == kerning.end()) return;
        ++counts_["return with kerning at the text's end"];
        const int32_t value = own->second;
        workbench::RemoveText(story_, size - 1, size);
        workbench::SetKerning(story_, size - 1, value);
    }

    /// Of the sets' names only two are known, by their first four letters; any other counts as the first.
    void KeepKinsoku(ParagraphAttributes* paragraph) {
        if (!paragraph->kinsoku) return;
        const std::u16string name = *paragraph->kinsoku;
        const bool hard = name.starts_with(u"Hard");
        const std::u16string kept = hard ? u"Hard" : u"Soft";
        if (name != kept) ++counts_["kinsoku set of another name"];
        paragraph->kinsoku = kept;
    }

    void ClampNumber(double* number) {
        if (std::abs(*number) < kLargestFixed) return;
        ++counts_["number beyond Fixed"];
        *number = std::isnan(*number) ? 0 : std::clamp(*number, -kLargestFixed, kLargestFixed);
    }

    Story& story_;
    std::map<std::string, int>& counts_;
};

} // namespace

void ApplyTextLosses(workbench::Art& art, std::map<std::string, int>* counts,
                     const std::function<void(const HostPatternUse&)>& applyToPattern) {
    auto& frame = std::get<TextFrameData>(art.data);
    if (!frame.story) return;
    if (frame.story->frames.size() > 1) ++(*counts)["text chain"];
    if (frame.frameKind == workbench::kPathText && frame.pathStart != 0) {
        ++(*counts)["start on a text's path"];
        frame.pathStart = 0;
    }
    frame.story = std::make_shared<Story>(*frame.story);
    frame.story->frames = {art.handle};
    Story& story = *frame.story;
    TextLosses losses(story, counts);
    losses.KeepCp932();
    losses.KeepKerningOfRuns();
    // One count for each style that the letters share.
    std::map<std::shared_ptr<const CharacterAttributes>, std::shared_ptr<const CharacterAttributes>>
        characters;
    std::map<std::shared_ptr<const ParagraphAttributes>, std::shared_ptr<const ParagraphAttributes>>
        paragraphs;
    for (size_t at = 0; at < story.styles.size(); ++at) {
        const CharacterStyle style = StyleOf(story, at);
        auto& character = characters[style.character];
        if (!character) {
            character = std::make_shared<const CharacterAttributes>(losses.Kept(*style.character));
            for (const auto& [painted, color] : {std::pair(character->fill, &character->fillColor),
                                                 std::pair(character->stroke, &character->strokeColor)})
                if (painted && color->kind == kColorPattern) applyToPattern(color->u.pattern);
        }
        auto& paragraph = paragraphs[style.paragraph];
        if (!paragraph)
            paragraph = std::make_shared<const ParagraphAttributes>(losses.Kept(*style.paragraph));
        story.styles[at] = {character, paragraph};
    }
}
