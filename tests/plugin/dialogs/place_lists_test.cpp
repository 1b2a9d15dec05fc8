#include "plugin/dialogs/place_lists.h"

#include <algorithm>
#include <random>
#include <set>

#include "tests/support/store_fixture.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

void Collect(void* list, const char* entry) {
    static_cast<Names*>(list)->emplace_back(entry);
}

// The lists by what a person sees in the folder: sorted by the eye's rules, which small letters alone have.
struct Seen {
    std::set<std::string> folders, groups;
};

Seen LookInto(const fs::path& folder) {
    Seen seen;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        const bool hidden = name[0] == '.' || name.find(".DAT") != std::string::npos;
        if (entry.is_directory() && !hidden) seen.folders.insert(name);
        if (entry.is_regular_file() && name.ends_with(".AID"))
            seen.groups.insert(name.substr(0, name.size() - 4));
    }
    return seen;
}

int PlaceOf(const Names& names, const std::string& name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? 0 : static_cast<int>(found - names.begin());
}

void ExpectList(const Names& list, int selected, std::set<std::string> inside, const char* first,
                const std::string& wanted) {
    ASSERT_FALSE(list.empty());
    Names rest = list;
    if (first != nullptr) {
        EXPECT_EQ(rest.front(), first);
        rest.erase(rest.begin());
    }
    if (first == nullptr && inside.empty()) inside.insert("UNTITLED");
    EXPECT_EQ(rest, Names(inside.begin(), inside.end()));
    EXPECT_EQ(selected, PlaceOf(list, wanted));
}

} // namespace

class PlaceListsTest : public StoreTest {};

TEST_F(PlaceListsTest, RandomTrees) {
    std::mt19937 random(20260101);
    const Names names = {"a", "b1", "c2", "d3", "e4", "x.DAT", ".git", "zz"};
    for (int round = 0; round < 40; ++round) {
        for (const auto& entry : fs::directory_iterator(root())) fs::remove_all(entry.path());
        const auto name = [&] { return names[random() % names.size()]; };
        for (int made = 0; made < 25; ++made) {
            fs::path at = root();
            for (size_t depth = random() % 3; depth > 0; --depth) at /= name();
            fs::create_directories(at);
            if (random() % 2 == 0) WriteFileBytes(at / (name() + ".AID"), {});
        }
        const std::string folder = name(), subFolder = name(), group = name();
        const fs::path inFolder = root() / folder, inSub = inFolder / subFolder;
        Names list;
        int selected = ListFolderEntries(folder.c_str(), Collect, &list);
        ExpectList(list, selected, LookInto(root()).folders, "None", folder);
        list.clear();
        selected = ListSubFolderEntries(folder.c_str(), subFolder.c_str(), Collect, &list);
        ExpectList(list, selected,
                   fs::is_directory(inFolder) ? LookInto(inFolder).folders : std::set<std::string>(), "None",
                   subFolder);
        list.clear();
        selected = ListGroupEntries(folder.c_str(), subFolder.c_str(), group.c_str(), Collect, &list);
        ExpectList(list, selected, fs::is_directory(inSub) ? LookInto(inSub).groups : std::set<std::string>(),
                   nullptr, group);
        if (HasFailure()) return;
    }
}
