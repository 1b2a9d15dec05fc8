// Steps back and forth over random documents: the document's whole dump is the witness.

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "tests/support/random_document.h"
#include "workbench/document/undo_history.h"
#include "workbench/shell/document_json.h"

using namespace workbench;

namespace {

std::set<ArtHandle> MembersOf(const Document& document) {
    std::set<ArtHandle> handles;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        const Art* root = document.LayerAt(i).root;
        ForEachArt(*root, [&](const Art& art) {
            if (&art != root) handles.insert(art.handle);
        });
    }
    return handles;
}

std::string Dump(Document& document) {
    std::string selected;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) { selected += art.selected ? '1' : '0'; });
        if (&document.LayerAt(i) == &document.CurrentLayer()) selected += 'c';
    }
    return selected + DocumentJson(document).dump(1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// One change of a kind that users and plug-ins make.
void ChangeSomething(Document& document, std::mt19937& dice) {
    const auto roll = [&](size_t below) { return std::uniform_int_distribution<size_t>(0, below - 1)(dice); };
    const std::set<ArtHandle> members = MembersOf(document);
    Art* some = members.empty()
                    ? nullptr
                    : document.Find(*std::next(members.begin(), static_cast<long>(roll(members.size()))));
    Layer& layer = document.LayerAt(roll(document.LayerCount()));
    switch (roll(8)) {
        case 0:
            if (some) document.DisposeArt(some);
            break;
        case 1:
            if (some) document.AdoptArt(*document.CopyArt(*some), *layer.root, true);
            break;
        case 2:
            document.InsertLayer(roll(document.LayerCount() + 1), "new " + std::to_string(roll(100)));
            break;
        case 3:
            layer.visible = !layer.visible;
            layer.title += "!";
            break;
        case 4:
            if (some) document.Transform(*some, {1, 0, 0, 1, 10, 20}, 1, false);
            break;
        case 5:
            if (document.LayerCount() > 1) document.RemoveLayer(roll(document.LayerCount()));
            break;
        case 6:
            document.SetCurrentLayer(roll(document.LayerCount()));
            layer.root->blend.opacity = 0.5;
            break;
        default:
            if (some) document.Select(*some, !some->selected);
            break;
    }
}

TEST(UndoHistory, StepsBackAndForthBringEachStateAgainWithFreshHandles) {
    for (unsigned seed = 0; seed < 3; ++seed) {
        std::mt19937 dice(seed);
        Document document;
        FillRandomDocument(document, RandomArt::kAnything, seed);
        document.KeepHistory();
        UndoHistory& history = *document.history();
        std::vector<std::string> states{Dump(document)};
        size_t at = 0; // in states
        for (int move = 0; move < 25; ++move) {
            const unsigned choice = dice() % 3;
            const std::set<ArtHandle> before = MembersOf(document);
            if (choice == 0 && history.CanUndo()) {
                history.Undo();
                --at;
            } else if (choice == 1 && history.CanRedo()) {
                history.Redo();
                ++at;
            } else {
                history.Begin("undo", "redo");
                ChangeSomething(document, dice);
                states.resize(++at);
                states.push_back(Dump(document));
                continue;
            }
            ASSERT_EQ(Dump(document), states[at]) << "seed " << seed << ", move " << move;
            ASSERT_EQ(history.saved(), at == 0);
            for (const ArtHandle handle : before) ASSERT_EQ(document.Find(handle), nullptr);
            for (const ArtHandle handle : MembersOf(document)) ASSERT_NE(document.Find(handle), nullptr);
        }
        while (history.CanUndo()) history.Undo();
        EXPECT_EQ(Dump(document), states.front());
    }
}

TEST(UndoHistory, ForgetsTheOldestStepAndKnowsWhatWasSaved) {
    Document document;
    UndoHistory history(document, 3);
    const auto add = [&] {
        history.Begin("u", "r");
        document.AppendArt(kArtPath, document.LayerAt(0).root);
    };
    add();
    history.MarkSaved();
    for (int i = 0; i < 3; ++i) add();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(history.CanUndo());
        EXPECT_FALSE(history.saved());
        history.Undo();
    }
    EXPECT_FALSE(history.CanUndo());
    EXPECT_TRUE(history.saved());
    EXPECT_EQ(document.LayerAt(0).root->childCount, 1u);
    // The saved state is behind an undone step that another one replaces.
    add();
    history.MarkSaved();
    history.Undo();
    add();
    EXPECT_FALSE(history.saved());
}

} // namespace
