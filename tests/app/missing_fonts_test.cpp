#include "app/missing_fonts.h"

#include <gmock/gmock.h>

#include "plugin/capture/post_art.h"
#include "tests/support/plugin_fixture.h"
#include "tests/support/text_art.h"

namespace {

// Each font is told of once, with what stands in for it by name or by class; fonts that are there aren't.
TEST_F(PluginFixture, FontsThatAreMissingAreToldWithTheirStandIns) {
    workbench::Art& frame = AddPointText(document(), *document().LayerAt(0).root, u"abcde");
    const char* names[] = {"Ryumin-KL", "Ryumin-KM", "Ryumin-KL-H", "Nobody", "Ryumin-KM"};
    TestFonts here = FewFonts(), there;
    for (const char* name : names) there.Add(name, 200 - static_cast<int32_t>(name[0] == 'R'));
    host().SetFontList(&there);
    for (size_t at = 0; at < 5; ++at) {
        workbench::CharacterAttributes attributes;
        attributes.font = names[at];
        attributes.baselineShift = static_cast<double>(at);
        SetCharacter(frame, at, at + 1, attributes);
    }
    document().SelectAll();
    ASSERT_EQ(AidbPostArt(), kHostNoError);
    host().SetFontList(&here);
    EXPECT_THAT(MissingFonts(),
                ::testing::ElementsAre("Ryumin-KM is missing, and nothing stands in for it",
                                       "Ryumin-KL-H is missing, Ryumin-KL stands in for it",
                                       "Nobody is missing, GothicBBB-Medium stands in for it"));
    host().SetFontList(nullptr);
}

} // namespace
