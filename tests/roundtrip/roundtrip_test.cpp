// The main oracle of capture and rebuild, which share only the stored form: a random document is captured,
// written to a group file, read back and rebuilt at the same place in an empty document.

#include <rapidcheck.h>

#include <set>

#include "app/compare_documents.h"
#include "plugin/capture/measure_selection.h"
#include "plugin/capture/post_art.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "tests/support/plugin_fixture.h"
#include "tests/support/random_document.h"
#include "workbench/text/font_config_list.h"

namespace {

constexpr char kGroup[] = "\\Folder\\Group";

class RoundTripTest : public PluginFixture {
protected:
    void SetUp() override {
        PluginFixture::SetUp();
        std::filesystem::create_directory(rootOnDisk() / "Folder");
        host().SetFontList(&workbench::TextFonts());
    }

    /// Captures all art of the front document into record 0, rebuilds it in a document of its own, which is
    /// the front document then, and gives back the original.
    std::unique_ptr<workbench::Document> StoreAndRebuild(HostPoint* origin) {
        document().SelectAll();
        HostRect bounds{};
        MeasureSelection(&bounds, false);
        *origin = {bounds.left, bounds.bottom};
        RC_ASSERT(AidbPostArt() == kHostNoError);
        std::filesystem::remove(rootOnDisk() / "Folder" / "Group.AID");
        RC_ASSERT(WriteRecord(kGroup, -1) == 0);

        auto original = host().Close();
        const HostPoint hardOrigin = original->hardOrigin;
        OpenEmptyDocument().hardOrigin = hardOrigin;
        globals->placePoint = *origin;
        globals->originMode = 2;
        RC_ASSERT(AidbLoadArt(kGroup, 0) == kHostNoError);
        return original;
    }
};

// What the comparison is told that a record can't hold must not be more than that.
TEST_F(RoundTripTest, ARebuiltDocumentIsTheOneThatWasRegisteredAndStaysSo) {
    const std::set<std::string> kLosses = {"layer",
                                           "group opacity in parts of a percent",
                                           "compound path opacity",
                                           "group blending mode",
                                           "group isolation",
                                           "group knockout",
                                           "gradient on a stroke",
                                           "gradient in a pattern",
                                           "gradient stop beyond 32",
                                           "stop opacity",
                                           "number beyond Fixed",
                                           "tag of an image",
                                           "tag of a mesh",
                                           "tag of another type",
                                           "plug-in art",
                                           "art style",
                                           "image in a pattern",
                                           "mesh in a pattern",
                                           "art style of an image",
                                           "text in a pattern",
                                           "text chain",
                                           "tag of a text",
                                           "letter outside of cp932",
                                           "start on a text's path",
                                           "gradient on text",
                                           "auto leading's share",
                                           "hanging roman",
                                           "justification's last line",
                                           "kinsoku set of another name",
                                           "kerning without text",
                                           "return with kerning at the text's end"};
    const std::set<std::string> kLossesAgain = {"mesh in a pattern", "text in a pattern",
                                                "kerning without text", "group opacity in parts of a percent",
                                                "gradient in a pattern"};
    EXPECT_TRUE(rc::check("round trip", [&] {
        OpenEmptyDocument();
        FillRandomDocument(document(), RandomArt::kRecordable, *rc::gen::arbitrary<unsigned>());
        document().hardOrigin = {*rc::gen::inRange(-8, 8) * 100.0, *rc::gen::inRange(-8, 8) * 50.0};
        for (const bool second : {false, true}) {
            RecordFrame frame;
            const auto stored = StoreAndRebuild(&frame.origin);
            // What comes back can lose no more, but for 0.99, which a group's note can't say, and the
            // kerning of a lone return, which comes back without the return.
            for (const auto& [loss, count] : ApplyFormatLosses(*stored, frame)) {
                RC_LOG() << loss << "\n";
                RC_ASSERT((second ? kLossesAgain : kLosses).contains(loss));
            }
            const auto differences = CompareDocuments(*stored, document(), frame);
            for (const std::string& line : differences) RC_LOG() << line << "\n";
            RC_ASSERT(differences.empty());
            RC_ASSERT(host().faults().empty());
            RC_ASSERT(host().alerts().empty());
        }
    }));
}

} // namespace
