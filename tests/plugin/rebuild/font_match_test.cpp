// The search for a stored font against a second simple way.
#include "plugin/rebuild/font_match.h"

#include <cstring>
#include <random>
#include <set>

#include "tests/plugin/rebuild/load_fixture.h"
#include "tests/support/text_art.h"

namespace {

AidbFontRef StoredFont(const std::string& name, int32_t firstClass) {
    AidbFontRef font{};
    font.nameLength = static_cast<uint8_t>(name.size());
    std::memcpy(font.name, name.data(), name.size());
    for (uint16_t i = 0; i < 3; ++i) font.classFirst[i] = static_cast<uint16_t>(firstClass + i);
    return font;
}

/// The search as a list of scores: each font gets the number of the first rule that it fulfils, the lowest
/// number wins, and of equals the last one in the list up to rule 4, else the first.
class SecondWay {
public:
    SecondWay(const std::string& name, int32_t firstClass) : name_(name), firstClass_(firstClass) {
        const size_t dash = name.find('-');
        const size_t second = dash == std::string::npos ? dash : name.find('-', dash + 1);
        if (second != std::string::npos) shorter_ = name.substr(0, second + 1);
    }

    int32_t Find(TestFonts& fonts) const {
        int best = 7;
        int32_t found = -1;
        for (size_t i = 0; i < fonts.Count(); ++i) {
            const int rule = Rule(fonts.At(i));
            if (rule < best || (rule == best && rule <= 4)) found = static_cast<int32_t>(i);
            best = std::min(best, rule);
        }
        return found;
    }

private:
    static bool Match(const std::string& a, const std::string& b) {
        const size_t length = std::min(a.size(), b.size());
        return a.compare(0, length, b, 0, length) == 0;
    }
    static bool PartsMatch(const std::string& a, const std::string& b) {
        const size_t dashA = a.find('-'), dashB = b.find('-');
        const auto style = [](const std::string& name, size_t dash) {
            return dash == std::string::npos ? "" : name.substr(dash);
        };
        return Match(a.substr(0, dashA), b.substr(0, dashB)) && Match(style(a, dashA), style(b, dashB));
    }
    static int Face(const std::string& name) {
        const std::pair<std::vector<const char*>, int> rules[] = {{{"GOTHIC", "gothic", "Gothic"}, 1},
                                                                  {{"MINCHO", "mincho", "Mincho"}, 2},
                                                                  {{"GO", "go", "Go"}, 1},
                                                                  {{"MI", "mi", "Mi"}, 2}};
        for (const auto& [words, face] : rules) {
            for (const char* word : words) {
                if (name.find(word) != std::string::npos) return face;
            }
        }
        return 0;
    }
    int Rule(const workbench::FontEntry& font) const {
        if (font.name == name_) return 1;
        if (name_.compare(0, font.name.size(), font.name) == 0) return 2;
        if (PartsMatch(font.name, name_)) return 3;
        if (!shorter_.empty() && PartsMatch(font.name, shorter_)) return 4;
        for (int32_t i = 0; i < 3; ++i) {
            if (font.words[static_cast<size_t>(2 + i)] != firstClass_ + i) return 7;
        }
        return Face(font.name) == Face(name_) ? 5 : 6;
    }

    std::string name_, shorter_;
    int32_t firstClass_;
};

class FontMatchTest : public LoadFixture {};

// Names as foundries give them, with families that begin alike, styles that begin alike, and few classes, so
// that each rule decides often and ties abound.
TEST_F(FontMatchTest, FindsWhatASecondWayFinds) {
    std::mt19937 random(12345);
    const auto pick = [&](const auto& list) { return std::string(list[random() % std::size(list)]); };
    const char* makers[] = {"", "", "Ko", "Kozu", "FOT", "DF", "A", "Hei", "Heisei", "Noto", "NotoSans"};
    const char* families[] = {"Gothic", "Mincho", "KakuGo", "Min",  "Sans",   "SansJP", "Ryumin", "Go",
                              "Logo",   "Serif",  "Mi",     "Maru", "GOTHIC", "mincho", "MINCHO", "Mistral"};
    const char* styles[] = {"",    "",       "-B",     "-Bold", "-BoldItalic", "-Bold-H", "-Bold-V",
                            "-W3", "-W3-KL", "-Light", "-KL",   "-",           "--"};
    int32_t notFound = 0;
    for (int list = 0; list < 12; ++list) {
        TestFonts fonts;
        std::set<std::string> names; // of which a list has no two alike
        const size_t count = list < 6 ? 3000 : 20;
        while (fonts.Count() < count) {
            const std::string number = random() % 2 ? std::to_string(random() % 200) : "";
            const std::string name = pick(makers) + pick(families) + number + pick(styles);
            const auto firstClass = static_cast<int32_t>(random() % 40) - 5;
            if (names.insert(name).second) fonts.Add(name, firstClass);
        }
        host().SetFontList(&fonts);
        for (int search = 0; search < (count > 100 ? 15 : 150); ++search) {
            const std::string name = (random() % 4 ? pick(makers) : "Q") + pick(families) +
                                     (random() % 3 ? std::to_string(random() % 200) : "") + pick(styles);
            const auto firstClass = static_cast<int32_t>(random() % 40) - 5;
            const int32_t found = FindStoredFont(StoredFont(name, firstClass));
            ASSERT_EQ(found, SecondWay(name, firstClass).Find(fonts)) << name;
            notFound += found < 0;
        }
        host().SetFontList(nullptr);
    }
    EXPECT_GT(notFound, 20);
    EXPECT_EQ(FindStoredFont(StoredFont("Any", 0)), -1);
}

} // namespace
