// The record index: order, rows and numbers.
#include "plugin/store/record_index.h"

#include <cstring>

#include "plugin/store/record.h"
#include "plugin/store/swap_words.h"
#include "tests/support/store_fixture.h"

namespace {

using Names = std::vector<std::string>;

class RecordIndexTest : public StoreTest {
protected:
    void Add(const char* group, uint32_t number, const char* name, const char* kind = "",
             uint32_t created = 0) {
        EXPECT_EQ(AidbAddItemRIHList(&globals->rihList, group, number, name, kind, created), 0);
    }
    Names Rows() {
        Names rows;
        for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
            const RihItem* item = RihItemOfRow(globals->rihList, row);
            rows.push_back(std::string(item->groupPath) + item->name + std::to_string(item->recNo));
        }
        return rows;
    }
};

} // namespace

// Plain bytes: no case, no cp932.  Equal items stay as they came.
TEST_F(RecordIndexTest, NamesSortAsBytes) {
    globals->rihList = NewRihList();
    Add("", 0, "b");
    Add("", 1, "\x95\x5C");
    Add("", 2, "B");
    Add("", 3, "a");
    Add("", 4, "b");
    Add("", 5, "bb");
    EXPECT_EQ(Rows(), (Names{"B2", "a3", "b0", "b4", "bb5",
                             "\x95\x5C"
                             "1"}));
}

TEST_F(RecordIndexTest, KindsSortEmptyOnesFirstAndThenByName) {
    globals->sortMode = 1;
    globals->rihList = NewRihList();
    Add("", 0, "a", "z");
    Add("", 1, "b", "y");
    Add("", 2, "a", "y");
    Add("", 3, "c", "");
    EXPECT_EQ(Rows(), (Names{"c3", "a2", "b1", "a0"}));
}

TEST_F(RecordIndexTest, DatesSortNewestFirstAndThenByName) {
    globals->sortMode = 2;
    globals->rihList = NewRihList();
    Add("", 0, "b", "", 0xF0000000);
    Add("", 1, "c", "", 5);
    Add("", 2, "a", "", 0xF0000000);
    Add("", 3, "d", "", 6);
    EXPECT_EQ(Rows(), (Names{"a2", "b0", "d3", "c1"}));
}

TEST_F(RecordIndexTest, ResortingKeepsTheOrderOfEqualItems) {
    globals->rihList = NewRihList();
    Add("", 0, "b", "k", 1);
    Add("", 1, "a", "k", 1);
    Add("", 2, "c", "j", 1);
    ResortRihList(1);
    EXPECT_EQ(Rows(), (Names{"c2", "a1", "b0"}));
    RihItemOfRow(globals->rihList, 0)->name[0] = 'z'; // would move if the same order were made again
    ResortRihList(1);
    EXPECT_EQ(Rows().at(0), "z2");
    ResortRihList(2);
    EXPECT_EQ(Rows(), (Names{"a1", "b0", "z2"}));
}

TEST_F(RecordIndexTest, TextsAreCutToTheirFields) {
    globals->rihList = NewRihList();
    Add(std::string(300, 'g').c_str(), 0, std::string(100, 'n').c_str(), std::string(100, 'k').c_str());
    const RihItem* item = RihItemOfRow(globals->rihList, 0);
    EXPECT_EQ(std::strlen(item->name), 63u);
    EXPECT_EQ(std::strlen(item->kind), 63u);
    EXPECT_EQ(std::strlen(item->groupPath), 255u);
}

TEST_F(RecordIndexTest, WithoutAListNothingIsAdded) {
    Add("", 0, "a");
    EXPECT_EQ(globals->rihList, nullptr);
    EXPECT_EQ(RihCount(nullptr), 0);
}

TEST_F(RecordIndexTest, RemovesTheItemOfOneRecord) {
    globals->rihList = NewRihList();
    Add("F", 0, "a");
    Add("G", 0, "b");
    Add("G", 1, "c");
    EXPECT_EQ(FindRihItem("G", 0), 1);
    EXPECT_EQ(FindRihItem("G", 2), -1);
    AidbRmvItemRIHList(&globals->rihList, "G", 0);
    AidbRmvItemRIHList(&globals->rihList, "G", 0);
    EXPECT_EQ(Rows(), (Names{"Fa0", "Gc1"}));
}

TEST_F(RecordIndexTest, LoadsAGroupAndFindsRecordsBehindRows) {
    MakeGroup("G", {"c", "a", "b", "a"});
    std::strcpy(globals->aidbfname, "G");
    char group[kNameBytes] = "";
    int32_t number = -1;
    EXPECT_EQ(GetRecordOfRow(0, group, &number), 1); // loads the list
    EXPECT_STREQ(group, "G");
    EXPECT_EQ(number, 1);
    EXPECT_EQ(Rows(), (Names{"Ga1", "Ga3", "Gb2", "Gc0"}));
    EXPECT_EQ(RihItemOfRow(globals->rihList, 3)->created, 3000000000u + 'c');
    EXPECT_EQ(GetRecordOfRow(4, group, &number), 0);
    EXPECT_EQ(number, 4);
    EXPECT_EQ(GetRecordOfRow(-1, nullptr, &number), 0);
    LoadRihList("Missing");
    EXPECT_EQ(globals->rihList, nullptr);
}

TEST_F(RecordIndexTest, AListThatIsNotOfOneGroupIsKept) {
    for (const int16_t mode : {kFindSearchResult, kFindFolder}) {
        globals->findMode = mode;
        FreeHandle(globals->rihList);
        LoadRihList("G");
        ASSERT_NE(globals->rihList, nullptr);
        Add("", 0, "a");
        LoadRihList("G");
        EXPECT_EQ(RihCount(globals->rihList), 1);
    }
}

TEST_F(RecordIndexTest, AFolderListsTheGroupsDirectlyInIt) {
    std::filesystem::create_directories(root() / "F" / "S");
    MakeGroup("\\F\\H", {"d", "a"});
    MakeGroup("\\F\\G", {"b"});
    MakeGroup("\\F\\S\\G", {"x"});
    MakeGroup("R", {"y"});
    globals->findMode = kFindFolder;
    BuildFolderIndex(globals->aidbfpath, "F", "");
    EXPECT_EQ(Rows(), (Names{"\\F\\Ha1", "\\F\\Gb0", "\\F\\Hd0"}));
    ASSERT_NE(globals->curRecord, nullptr); // the last header read
    EXPECT_STREQ(cur().header.name, "a");
    EXPECT_EQ(globals->curRecordNo, 1);
}

// A sort of everything at once must come to what inserting one by one comes to, whatever is equal.
TEST_F(RecordIndexTest, SortingEqualsInsertingOneByOne) {
    const char* const parts[] = {"", "a", "A", "\x95\x5C", "longer than eight", "longer than eighty", "\xFF"};
    uint32_t random = 1;
    const auto next = [&random](uint32_t below) {
        random = random * 1664525 + 1013904223;
        return (random >> 16) % below;
    };
    for (int16_t mode = -1; mode <= 3; ++mode) {
        for (const uint32_t count : {0u, 1u, 2u, 3000u}) { // more than the block's first grain holds
            globals->sortMode = mode;
            FreeHandle(globals->rihList);
            globals->rihList = NewRihList();
            GatheredItems gathered;
            for (uint32_t number = 0; number < count; ++number) {
                RecordHeader header{};
                std::strcpy(header.name, parts[next(7)]);
                std::strcat(header.name, parts[next(7)]);
                std::strcpy(header.kind, parts[next(3)]);
                header.created = next(2) * 0xFF000000 + next(2);
                GatherItem(gathered, "G", number, header);
                Add("G", number, header.name, header.kind, SwapLong(header.created));
            }
            const Names inserted = Rows();
            TakeGathered(gathered);
            ASSERT_EQ(Rows(), inserted) << mode << " of " << count;
        }
    }
}
