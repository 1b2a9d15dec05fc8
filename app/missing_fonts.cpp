#include "app/missing_fonts.h"

#include <algorithm>
#include <set>

#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/font_match.h"

namespace {

std::string StoredName(const AidbFontRef& font) {
    const auto* end = std::find(std::begin(font.name), std::end(font.name), '\0');
    return std::string(std::begin(font.name), end);
}

std::string HostName(int32_t index) {
    FontKey key = nullptr;
    char name[256] = {};
    if (index < 0 || FontSuite().GetNthFont(index, &key) != kHostNoError) return {};
    return FontSuite().GetFontName(key, name, sizeof name) == kHostNoError ? name : "";
}

std::string SentenceOn(const std::string& stored, const std::string& standIn) {
    const std::string font = stored.empty() ? "a font without a name" : Utf8OfCp932(stored);
    if (standIn.empty()) return font + " is missing, and nothing stands in for it";
    return font + " is missing, " + standIn + " stands in for it";
}

} // namespace

std::vector<std::string> MissingFonts() {
    std::vector<std::string> sentences;
    std::set<std::string> known; // the bytes of what was looked for
    ObjectWalk walk(globals->curRecord);
    for (auto object = walk.Next(); !object.empty(); object = walk.Next()) {
        if (HeaderOf(object)->type != kTextObject) continue;
        for (const AidbTextRun& run : TextRuns(object)) {
            const std::string bytes(reinterpret_cast<const char*>(&run.font), sizeof run.font);
            if (!known.insert(bytes).second) continue;
            const std::string stored = StoredName(run.font), standIn = HostName(FindStoredFont(run.font));
            if (stored == standIn && !stored.empty()) continue;
            std::string sentence = SentenceOn(stored, standIn);
            if (std::ranges::find(sentences, sentence) == sentences.end())
                sentences.push_back(std::move(sentence));
        }
    }
    return sentences;
}
