#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {
namespace {

using ::testing::ElementsAre;
using Members = std::vector<const Art*>;

/// The members of a container from the top; the way back has to agree.
Members MembersOf(const Art& container) {
    Members down, up;
    for (const Art* art = container.firstChild; art; art = art->below) down.push_back(art);
    for (const Art* art = container.lastChild; art; art = art->above) up.insert(up.begin(), art);
    EXPECT_EQ(down, up);
    EXPECT_EQ(down.size(), container.childCount);
    for (const Art* art : down) EXPECT_EQ(art->parent, &container);
    return down;
}

class ArtTreeTest : public ::testing::Test {
protected:
    Art* New(int32_t kind, int32_t paintOrder, Art* prep) {
        Art* art = nullptr;
        EXPECT_EQ(document_.NewArt(kind, paintOrder, prep, &art), kHostNoError);
        return art;
    }
    HostError TryNew(int32_t kind, int32_t paintOrder, Art* prep) {
        Art* art = nullptr;
        const HostError error = document_.NewArt(kind, paintOrder, prep, &art);
        EXPECT_EQ(art != nullptr, error == kHostNoError);
        return error;
    }
    Art& root() { return *document_.CurrentLayer().root; }

    Document document_;
};

TEST_F(ArtTreeTest, EachPaintOrderPutsNewArtInItsPlace) {
    Art* group = New(kArtGroup, kPlaceAboveAll, nullptr);
    Art* middle = New(kArtPath, kPlaceInsideOnTop, group);
    Art* top = New(kArtPath, kPlaceInsideOnTop, group);
    Art* bottom = New(kArtPath, kPlaceInsideAtBottom, group);
    Art* above = New(kArtPath, kPlaceAbove, middle);
    Art* below = New(kArtPath, kPlaceBelow, middle);
    Art* beneath = New(kArtPath, kPlaceBelow, bottom);
    Art* crown = New(kArtPath, kPlaceAbove, top);
    EXPECT_THAT(MembersOf(*group), ElementsAre(crown, top, above, middle, below, bottom, beneath));
    Art* over = New(kArtPath, kPlaceAboveAll, nullptr);
    EXPECT_THAT(MembersOf(root()), ElementsAre(over, group));
}

TEST_F(ArtTreeTest, ReorderingKeepsHandlesAndMovesMembersAlong) {
    Art* group = New(kArtGroup, kPlaceAboveAll, nullptr);
    Art* member = New(kArtPath, kPlaceInsideOnTop, group);
    Art* path = New(kArtPath, kPlaceAboveAll, nullptr);
    Art* last = New(kArtPath, kPlaceInsideAtBottom, &root());
    ASSERT_THAT(MembersOf(root()), ElementsAre(path, group, last));

    EXPECT_EQ(document_.ReorderArt(group, kPlaceInsideOnTop, &root()), kHostNoError);
    EXPECT_THAT(MembersOf(root()), ElementsAre(group, path, last));
    EXPECT_EQ(document_.ReorderArt(group, kPlaceBelow, path), kHostNoError);
    EXPECT_THAT(MembersOf(root()), ElementsAre(path, group, last));
    EXPECT_EQ(document_.ReorderArt(group, kPlaceBelow, path), kHostNoError) << "where it is already";
    EXPECT_EQ(document_.ReorderArt(last, kPlaceInsideAtBottom, &root()), kHostNoError);
    EXPECT_THAT(MembersOf(root()), ElementsAre(path, group, last));
    EXPECT_EQ(document_.ReorderArt(path, kPlaceInsideAtBottom, group), kHostNoError);
    EXPECT_THAT(MembersOf(*group), ElementsAre(member, path));
    EXPECT_EQ(document_.Find(path->handle), path);
}

TEST_F(ArtTreeTest, ArtCannotBeMovedIntoItself) {
    Art* outer = New(kArtGroup, kPlaceAboveAll, nullptr);
    Art* inner = New(kArtGroup, kPlaceInsideOnTop, outer);
    Art* path = New(kArtPath, kPlaceInsideOnTop, inner);
    EXPECT_EQ(document_.ReorderArt(outer, kPlaceInsideOnTop, outer), kHostBadPlace);
    EXPECT_EQ(document_.ReorderArt(outer, kPlaceInsideOnTop, inner), kHostBadPlace);
    EXPECT_EQ(document_.ReorderArt(outer, kPlaceBelow, path), kHostBadPlace);
    EXPECT_EQ(document_.ReorderArt(outer, kPlaceAbove, outer), kHostBadPlace);
    EXPECT_EQ(document_.ReorderArt(&root(), kPlaceInsideOnTop, outer), kHostBadPlace);
    EXPECT_THAT(MembersOf(root()), ElementsAre(outer));
    EXPECT_THAT(MembersOf(*outer), ElementsAre(inner));
}

TEST_F(ArtTreeTest, WrongPlacesAreRefusedAndNothingIsMade) {
    Art* path = New(kArtPath, kPlaceAboveAll, nullptr);
    Art* compound = New(kArtCompoundPath, kPlaceAboveAll, nullptr);
    Art* loose = document_.AppendArt(kArtGroup, nullptr);
    EXPECT_EQ(TryNew(kArtPath, kPlaceInsideOnTop, path), kHostBadPlace);
    EXPECT_EQ(TryNew(kArtPath, kPlaceInsideOnTop, nullptr), kHostBadPlace);
    EXPECT_EQ(TryNew(kArtPath, kPlaceAbove, &root()), kHostBadPlace) << "beside a layer's root";
    EXPECT_EQ(TryNew(kArtTextFrame, kPlaceInsideOnTop, compound), kHostBadPlace);
    EXPECT_EQ(TryNew(kArtPath, kPlaceInsideOnTop, compound), kHostNoError);
    EXPECT_EQ(TryNew(kArtPath, kPlaceInsideOnTop, loose), kHostBadPlace);
    EXPECT_EQ(TryNew(4, kPlaceAboveAll, nullptr), kHostBadParameter);
    EXPECT_EQ(TryNew(kArtPath, 6, nullptr), kHostBadParameter);
    document_.CurrentLayer().locked = true;
    EXPECT_EQ(TryNew(kArtPath, kPlaceAboveAll, nullptr), kHostBadPlace);
    document_.CurrentLayer().locked = false;
    document_.CurrentLayer().visible = false;
    EXPECT_EQ(TryNew(kArtPath, kPlaceInsideOnTop, &root()), kHostBadPlace);
    EXPECT_THAT(MembersOf(root()), ElementsAre(compound, path));
}

TEST_F(ArtTreeTest, DisposedHandlesStayStaleWhateverIsMadeAfterwards) {
    Art* group = New(kArtGroup, kPlaceAboveAll, nullptr);
    const ArtHandle inner = New(kArtPath, kPlaceInsideOnTop, group)->handle;
    const ArtHandle outer = group->handle;
    ASSERT_EQ(document_.DisposeArt(group), kHostNoError);
    Document other;
    for (int i = 0; i < 2000; ++i) {
        const ArtHandle made = New(kArtPath, kPlaceAboveAll, nullptr)->handle;
        const ArtHandle elsewhere = other.AppendArt(kArtPath, other.CurrentLayer().root)->handle;
        ASSERT_TRUE(made != inner && made != outer && elsewhere != made);
        ASSERT_EQ(document_.Find(elsewhere), nullptr) << "another document's art";
        ASSERT_EQ(other.Find(made), nullptr);
        ASSERT_NE(other.Find(elsewhere), nullptr);
    }
    EXPECT_EQ(document_.Find(inner), nullptr);
    EXPECT_EQ(document_.Find(outer), nullptr);
    EXPECT_EQ(document_.DisposeArt(&root()), kHostBadPlace);
}

TEST_F(ArtTreeTest, AContainerIsSelectedWhenAllInItIs) {
    Art* outer = New(kArtGroup, kPlaceAboveAll, nullptr);
    Art* inner = New(kArtGroup, kPlaceInsideOnTop, outer);
    Art* first = New(kArtPath, kPlaceInsideOnTop, inner);
    Art* second = New(kArtPath, kPlaceInsideOnTop, inner);
    document_.Select(*first, true);
    EXPECT_FALSE(inner->selected);
    document_.Select(*second, true);
    EXPECT_TRUE(inner->selected && outer->selected && root().selected);
    document_.Select(*first, false);
    EXPECT_FALSE(inner->selected || outer->selected || root().selected);
    EXPECT_TRUE(second->selected);
    document_.Select(*outer, true);
    EXPECT_TRUE(first->selected && inner->selected && root().selected);

    // The tree's changes count as well.
    Art* third = New(kArtPath, kPlaceInsideOnTop, inner);
    EXPECT_FALSE(inner->selected || outer->selected || root().selected);
    document_.ReorderArt(third, kPlaceInsideOnTop, outer);
    EXPECT_TRUE(inner->selected);
    EXPECT_FALSE(outer->selected);
    document_.DisposeArt(third);
    EXPECT_TRUE(outer->selected && root().selected);
    document_.SelectNone();
    EXPECT_FALSE(first->selected || inner->selected || outer->selected || root().selected);
}

// A damaged record can nest groups as deep as it likes; nothing may recurse over them.
TEST_F(ArtTreeTest, DeepTreesCostNoStack) {
    constexpr int kDepth = 10000;
    auto document = std::make_unique<Document>();
    Art* top = document->AppendArt(kArtGroup, document->CurrentLayer().root);
    Art* deepest = top;
    for (int i = 0; i < kDepth; ++i) deepest = document->AppendArt(kArtGroup, deepest);
    document->AppendArt(kArtPath, deepest)->path()->segments = {{{3, 4}, {3, 4}, {3, 4}, 1}};
    HostRect bounds{};
    EXPECT_TRUE(document->Bounds(*top, &bounds));
    EXPECT_EQ(bounds.left, 3);
    document->Select(*deepest->firstChild, true);
    EXPECT_TRUE(document->CurrentLayer().root->selected);
    int visited = 0;
    ForEachArt(*top, [&](const Art&) { ++visited; });
    EXPECT_EQ(visited, kDepth + 2);
    Art* copy = document->CopyArt(*top);
    EXPECT_EQ(document->DisposeArt(copy), kHostNoError);
    document.reset();
}

} // namespace
} // namespace workbench
