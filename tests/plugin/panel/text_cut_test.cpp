#include "plugin/panel/text_cut.h"

#include <gtest/gtest.h>

#include <string>

#include "plugin/store/cp932.h"

namespace {

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
        // Not one character more would fit; one goes in any case.
        const size_t more = kept.size() + CharacterBytes(text.c_str() + kept.size());
        SIZE keptSize{}, moreSize{}, dots{};
        GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(kept.size()), &keptSize);
        GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(more), &moreSize);
        GetTextExtentPoint32A(context, "...", 3, &dots);
        if (!kept.empty()) {
            ASSERT_LT(keptSize.cx + dots.cx, limit);
        }
        if (more < text.size()) {
            ASSERT_GE(moreSize.cx + dots.cx, limit);
        }
    }
    DeleteDC(context);
}

} // namespace
