#include <gmock/gmock.h>

#include "plugin/rebuild/tag_rebuild.h"
#include "tests/plugin/rebuild/load_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- Notes ----

class TagNoteTest : public LoadFixture {
protected:
    std::vector<std::string> Pending() {
        std::vector<std::string> lines;
        const auto* tags = reinterpret_cast<const pendingTag*>(BlockBytes(globals->pendingTags));
        for (int32_t i = 0; i < globals->pendingTagCount; ++i)
            lines.push_back(std::string(tags[i].name) + "|" + tags[i].type + "|" + tags[i].value);
        return lines;
    }
};

TEST_F(TagNoteTest, EachGoodLineIsATagAndFieldsAreCutToTheirRoom) {
    LoadArtTagProcess("'Tag = 1, string, a\r\r  'Tag = 2, string, b\rTag = \"'3, = 4\", string, c\r");
    EXPECT_THAT(Pending(), ElementsAre("c|string|'3, = 4"));
    LoadArtTagProcess("Tag = 1, string\r");
    EXPECT_THAT(Pending(), IsEmpty());
    EXPECT_EQ(globals->pendingTags, nullptr);
    const std::string value(300, 'v'), type(70, 't'), name(80, 'n');
    std::string note = "Tag = \"" + value + "\", " + type + ", " + name + "\r";
    for (int i = 1; i < 501; ++i) note += "Tag = 1, string, n" + std::to_string(i) + "\r";
    LoadArtTagProcess(note);
    EXPECT_EQ(Pending().size(), 500u);
    EXPECT_EQ(Pending().front(), name.substr(0, 63) + "|" + type.substr(0, 63) + "|" + value.substr(0, 255));
    EXPECT_EQ(Pending().back(), "n499|string|1");
}

// ---- From notes to art ----

class TagLoadTest : public LoadFixture {
protected:
    /// The current layer is the lowest of "Top", "Twin", "Twin", "Base".
    void MakeLayers() {
        document().LayerAt(0).title = "Base";
        document().InsertLayer(0, "Twin");
        document().InsertLayer(0, "Twin");
        document().InsertLayer(0, "Top");
        document().SetCurrentLayer(3);
    }
    std::string LayerText(size_t index) {
        const workbench::Layer& layer = document().LayerAt(index);
        return layer.title + ": " + Describe(*layer.root);
    }
};

TEST_F(TagLoadTest, WithTheOptionAGroupMovesWithAllThatIsBuiltInIt) {
    MakeLayers();
    document().AppendArt(kArtGroup, document().LayerAt(1).root);
    globals->layerOption = 1;
    Path(1);
    Note("GroupArt / Clipped=TRUE");
    Path(2);
    Note("/ GroupArt");
    Note("Tag = \"Twin\", string, aidb_layer_title\r");
    Path(3);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(LayerText(1), "Twin: g(g!(p2) g())");
    EXPECT_EQ(LayerText(2), "Twin: g()");
    EXPECT_EQ(LayerText(3), "Base: g(p1 p3)");
}

TEST_F(TagLoadTest, AnUnknownTitleMakesALayerAboveAllOthersAndALockedOneTakesNothing) {
    MakeLayers();
    document().LayerAt(0).locked = true;
    globals->layerOption = 1;
    for (const int id : {1, 2}) {
        Path(id);
        Note("Tag = \"背景\", string, aidb_layer_title\r");
    }
    Path(3);
    Note("Tag = \"Top\", string, aidb_layer_title\r");
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(document().LayerCount(), 5u);
    EXPECT_EQ(LayerText(0), std::string(reinterpret_cast<const char*>(u8"背景")) + ": g(p1 p2)");
    EXPECT_EQ(LayerText(1), "Top: g()");
    EXPECT_EQ(LayerText(4), "Base: g(p3)");
}

// ---- From art to art ----

TEST_F(TagLoadTest, CopiedTagsReplaceStringsAndLeaveOtherTypes) {
    workbench::Art *target = AddArt(kArtPath, nullptr), *source = AddArt(kArtPath, nullptr);
    target->tags = {{"old", "string", "1"}, {"number", "real", "2"}, {"both", "string", "3"}};
    source->tags = {{"both", "string", "4"}, {"hidden", "real", "5"}, {"new", "string", "6"}};
    CopyStringTags(target->handle, source->handle);
    EXPECT_THAT(TagsOf(*target), ElementsAre("number:real=2", "both=4", "new=6"));
}

// ---- The drop onto existing art ----

class TagTransferTest : public LoadFixture {
protected:
    void Drop(workbench::Art* target) {
        globals->trackState = 2;
        globals->trackTarget = target->handle;
        before_ = Page();
        EXPECT_EQ(Load(), kHostNoError);
        EXPECT_EQ(Page(), before_);
    }
    std::vector<std::string> Alerts() {
        std::vector<std::string> texts;
        for (const auto& alert : host().alerts()) texts.push_back(alert.text);
        return texts;
    }
    /// A group of a path and a compound path, with tags.
    void TaggedGroup() {
        Note("GroupArt /");
        Path(1);
        Note("Tag = \"first\", string, n\r");
        Note("CompoundPathArt /");
        Path(2);
        Note("/ CompoundPathArt");
        Note("Tag = \"second\", string, n\r");
        Note("/ GroupArt");
        Note("Tag = \"whole\", string, n\r");
    }

private:
    std::string before_;
};

TEST_F(TagTransferTest, AGroupIsLaidAgainstTheNearestAncestorOfItsSize) {
    workbench::Art* outer = AddArt(kArtGroup, nullptr);
    workbench::Art* group = AddArt(kArtGroup, outer);
    workbench::Art* compound = AddArt(kArtCompoundPath, group);
    workbench::Art* member = AddArt(kArtPath, compound);
    workbench::Art* path = AddArt(kArtPath, group);
    TaggedGroup();
    Drop(member);
    EXPECT_THAT(TagsOf(*group), ElementsAre("n=whole"));
    EXPECT_THAT(TagsOf(*path), ElementsAre("n=first"));
    EXPECT_THAT(TagsOf(*compound), ElementsAre("n=second"));
    EXPECT_THAT(TagsOf(*outer), IsEmpty());
    EXPECT_THAT(Alerts(), IsEmpty());

    // Pairs of different kind are left alone, which is said once.
    workbench::Art* other = AddArt(kArtGroup, nullptr);
    workbench::Art* lower = AddArt(kArtPath, other);
    workbench::Art* upper = AddArt(kArtCompoundPath, other);
    globals->language = 0;
    AddArt(kArtPath, upper);
    Drop(lower);
    EXPECT_THAT(TagsOf(*other), ElementsAre("n=whole"));
    EXPECT_THAT(TagsOf(*lower), IsEmpty());
    EXPECT_THAT(TagsOf(*upper), IsEmpty());

    workbench::Art* lone = AddArt(kArtPath, AddArt(kArtGroup, nullptr)); // no ancestor of that size
    Drop(lone);
    globals->language = 1;
    Drop(lone);
    EXPECT_THAT(TagsOf(*lone), IsEmpty());
    EXPECT_THAT(Alerts(), ElementsAre(reinterpret_cast<const char*>(u8"オブジェクトのタイプが一致しません。"),
                                      reinterpret_cast<const char*>(u8"オブジェクトの個数が一致しません。"),
                                      "The number of objects does not accord."));
}

// The layer's group is an ancestor too.  The record's own art and its pattern holders lie in it during the
// load and must not be counted: the layer's group, the scratch group and the path are three.
TEST_F(TagTransferTest, HoldersDontCountAsArtOfTheLayer) {
    workbench::Art* path = AddArt(kArtPath, nullptr);
    Note("GroupArt /");
    Path(1);
    PatternPath(2, 1);
    Note("Tag = \"a\", string, n\r");
    Note("/ GroupArt");
    Note("PatternArt00001 /");
    Path(4);
    Note("/ PatternArt00001");
    Drop(path);
    EXPECT_THAT(TagsOf(*path), ElementsAre("n=a"));
}

} // namespace
