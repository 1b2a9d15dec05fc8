// What the plug-in hangs into the host's frame, and what it learns at each tick.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

#include "plugin/frame/document_window.h"
#include "plugin/store/store_names.h"
#include "tests/support/panel_fixture.h"

namespace {

using ::testing::ElementsAre;

class MenusAndTimerTest : public PanelFixture {
protected:
    const workbench::MenuItem* ItemOf(const std::string& text) {
        for (const auto& item : host().menuItems()) {
            if (item->text == text) return item.get();
        }
        return nullptr;
    }
    /// Which of the three entries that are ever disabled are on.
    std::vector<bool> Enabled() {
        std::vector<bool> enabled;
        for (const auto& item : host().panels().front()->flyout->items) {
            if (item.number == 11 || item.number == 12 || item.number == 15) enabled.push_back(item.enabled);
        }
        return enabled;
    }
};

TEST_F(MenusAndTimerTest, ThePanelsEntryFollowsThePanel) {
    const workbench::MenuItem* item = ItemOf("Velquorne");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->group->name, "Tool Palettes");
    EXPECT_EQ(item->options, workbench::kMenuWantsUpdate);
    EXPECT_EQ(plugin().PickMenu(item->handle), kHostNoError); // there is no panel yet
    BuildThePanel();
    EXPECT_TRUE(host().panels().front()->shown);
    plugin().UpdateMenu(item->handle);
    EXPECT_TRUE(item->checked);
    plugin().PickMenu(item->handle);
    EXPECT_FALSE(host().panels().front()->shown);
    plugin().UpdateMenu(item->handle);
    EXPECT_FALSE(item->checked);
}

TEST_F(MenusAndTimerTest, SharesTheMakersAboutMenu) {
    const workbench::MenuItem* item = ItemOf("Velquorne...");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->group->name, "TV_PLUGINS_ABOUT");
    const workbench::MenuItem* head = ItemOf("About Plug-ins (TOLMA-VERNISH INC.)");
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->group->name, "About");
    EXPECT_EQ(item->group->parent, head);
    // Where another plug-in has made the group there is no second head.
    ShutDownPlugin();
    host().AddMenuGroup("TV_PLUGINS_ABOUT");
    ReleaseSuites();
    ASSERT_EQ(plugin().StartUp(), kHostNoError);
    HoldSuites();
    EXPECT_EQ(ItemOf("About Plug-ins (TOLMA-VERNISH INC.)"), nullptr);
    EXPECT_NE(ItemOf("Velquorne..."), nullptr);
}

TEST_F(MenusAndTimerTest, TicksFollowTheCurrentNameAndTheFolders) {
    BuildThePanel();
    const auto tickWith = [this](const char* name) {
        SelectGroup(name);
        Tick();
        return Enabled();
    };
    EXPECT_THAT(tickWith("Group"), ElementsAre(false, false, true));
    EXPECT_EQ(globals->hasFolders, 0);
    CreateDirectoryA((std::string(globals->aidbfpath) + "\\Folder").c_str(), nullptr);
    Tick();
    EXPECT_EQ(globals->hasFolders, 0) << "nobody has said that it changed";
    globals->hasFolders = kNotKnown;
    EXPECT_THAT(tickWith("Group"), ElementsAre(true, false, true));
    EXPECT_EQ(globals->hasFolders, 1);
    EXPECT_THAT(tickWith("\\F\\S\\G"), ElementsAre(true, true, true));
    EXPECT_THAT(tickWith("\\F\\G"), ElementsAre(true, false, true));
    EXPECT_THAT(tickWith("\\F\\A Folder is Selected"), ElementsAre(true, true, false));
    EXPECT_THAT(tickWith("A Folder is Selected"), ElementsAre(true, false, false));
    tickWith("\\F\\S\\G");
    EXPECT_THAT(tickWith("Search Result"), ElementsAre(true, false, false));
    tickWith(""); // changes nothing
    EXPECT_STREQ(globals->lastGroupSeen, "Search Result");
}

TEST_F(MenusAndTimerTest, ATickWithinATickOnlyNotesTheInterface) {
    BuildThePanel();
    globals->timerBusy = 1;
    globals->hasFolders = kNotKnown;
    globals->hostBasic = nullptr;
    Tick();
    EXPECT_EQ(globals->hasFolders, kNotKnown);
    EXPECT_EQ(globals->hostBasic, host().basic());
    globals->timerBusy = 0;
    Tick();
    EXPECT_EQ(globals->hasFolders, 0);
    EXPECT_NE(globals->documentView, nullptr);
    host().Close();
    Tick();
    EXPECT_EQ(globals->documentView, nullptr);
    EXPECT_EQ(globals->docWindow, nullptr);
    OpenEmptyDocument();
}

HWND Window(const char* title, DWORD style, RECT place, HWND parent) {
    return CreateWindowExA(0, "STATIC", title, style | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent, nullptr, nullptr,
                           nullptr);
}

// The smallest window at one third of the first window with a document's title; of equal ones the last.
TEST_F(MenusAndTimerTest, FindsTheDocumentsWindow) {
    EXPECT_EQ(FindDocumentWindow(), nullptr);
    const HWND other = Window("drawing@100%", WS_POPUP, {0, 0, 300, 300}, nullptr);
    EXPECT_EQ(FindDocumentWindow(), nullptr);
    const HWND top = Window("drawing.svg @ 100%", WS_POPUP, {30, 30, 330, 330}, nullptr);
    EXPECT_EQ(FindDocumentWindow(), top);
    const HWND frame = Window("", WS_CHILD, {50, 50, 250, 250}, top);
    const HWND page = Window("", WS_CHILD, {0, 0, 100, 100}, frame);
    const HWND beside = Window("", WS_CHILD, {60, 60, 70, 70}, frame); // (130, 130) lies left of it
    EXPECT_EQ(FindDocumentWindow(), page);
    ShowWindow(page, SW_HIDE);
    EXPECT_EQ(FindDocumentWindow(), frame);
    EXPECT_NE(beside, nullptr);
    DestroyWindow(top);
    DestroyWindow(other);
}

} // namespace
