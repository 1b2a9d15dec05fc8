#include "plugin/panel/text_cut.h"

#include <gtest/gtest.h>

#include <string>

#include "plugin/store/cp932.h"

namespace {

// Every byte ten pixels wide, the dots together fifteen.
size_t Cut(const std::string& text, int limit) {
    std::vector<int> widths;
    for (size_t i = 1; i <= text.size(); ++i) widths.push_back(static_cast<int>(10 * i));
    return BytesBeforeDots(text.c_str(), widths.data(), 15, limit);
}

TEST(TextCut, TakesWholeCharactersOffUntilTheDotsFit) {
    EXPECT_EQ(Cut("abcdefgh", 66), 5u); // 50 + 15 is narrower than 66
    EXPECT_EQ(Cut("abcdefgh", 65), 4u); // and not than 65
    EXPECT_EQ(Cut("abcdefgh", 1000), 7u) << "one character goes in any case";
    EXPECT_EQ(Cut("abcdefgh", 25), 0u);
    EXPECT_EQ(Cut("a", 5), 0u);
    EXPECT_EQ(Cut("abc表", 1000), 3u) << "both bytes of the last character";
    EXPECT_EQ(Cut("ソ表ソ表", 60), 4u);
    EXPECT_EQ(Cut("ソ表ソ表", 55), 2u) << "never within a character";
    // The second byte of one character looks like the first of another.
    EXPECT_EQ(Cut("リリa", 1000), 4u);
}

TEST(TextCut, FitsWhatItMeasures) {
    const HDC context = CreateCompatibleDC(nullptr);
    const std::string text = "名前のとても長いデータ name and more of it";
    SIZE whole{};
    GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &whole);
    EXPECT_EQ(std::string(CutToWidth(context, text.c_str(), whole.cx).bytes), text);
    EXPECT_EQ(std::string(CutToWidth(context, "", 0).bytes), "");
    for (int limit = 0; limit < whole.cx; ++limit) {
        const ShownText cut = CutToWidth(context, text.c_str(), limit);
        const std::string bytes(cut.bytes, static_cast<size_t>(cut.count));
        ASSERT_TRUE(bytes.ends_with("...")) << limit;
        ASSERT_EQ(bytes, cut.bytes);
        const std::string kept = bytes.substr(0, bytes.size() - 3);
        ASSERT_EQ(CutWhole(text, kept.size()), kept) << limit;
        SIZE keptSize{}, dots{};
        GetTextExtentPoint32A(context, kept.c_str(), static_cast<int>(kept.size()), &keptSize);
        GetTextExtentPoint32A(context, "...", 3, &dots);
        if (!kept.empty()) {
            ASSERT_LT(keptSize.cx + dots.cx, limit);
        }
    }
    DeleteDC(context);
}

} // namespace
