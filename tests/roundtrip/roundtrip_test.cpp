// The main oracle of capture and rebuild, which share only the stored form: a random document is captured,
// written to a group file, read back and rebuilt at the same place in an empty document.

#include <rapidcheck.h>

#include "plugin/capture/measure_selection.h"
#include "plugin/capture/post_art.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "tests/roundtrip/compare_documents.h"
#include "tests/roundtrip/random_document.h"
#include "tests/support/plugin_fixture.h"

namespace {

constexpr char kGroup[] = "\\Folder\\Group";

class RoundTripTest : public PluginFixture {
protected:
    void SetUp() override {
        PluginFixture::SetUp();
        std::filesystem::create_directory(rootOnDisk() / "Folder");
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

TEST_F(RoundTripTest, ARebuiltDocumentIsTheOneThatWasRegistered) {
    EXPECT_TRUE(rc::check("round trip", [this] {
        OpenEmptyDocument();
        FillRandomDocument(document());
        document().hardOrigin = {*rc::gen::inRange(-8, 8) * 100.0, *rc::gen::inRange(-8, 8) * 50.0};
        HostPoint origin{};
        const auto original = StoreAndRebuild(&origin);
        const auto differences = CompareDocuments(*original, document(), origin);
        for (const std::string& line : differences) RC_LOG() << line << "\n";
        RC_ASSERT(differences.empty());
        RC_ASSERT(host().faults().empty());
        RC_ASSERT(host().alerts().empty());
    }));
}

// What comes back is in the record already, so a second trip changes nothing more than the last bit.
TEST_F(RoundTripTest, ASecondTripKeepsWhatTheFirstOneKept) {
    EXPECT_TRUE(rc::check("second round trip", [this] {
        OpenEmptyDocument();
        FillRandomDocument(document());
        HostPoint origin{};
        StoreAndRebuild(&origin);
        const auto first = StoreAndRebuild(&origin);
        const auto differences = CompareDocuments(*first, document(), origin);
        for (const std::string& line : differences) RC_LOG() << line << "\n";
        RC_ASSERT(differences.empty());
    }));
}

} // namespace
