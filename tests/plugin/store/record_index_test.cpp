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

// Plain bytes: no case, no cp932.  Empty kinds come first and new dates; then names decide, and equal items
// stay as they came.
TEST_F(RecordIndexTest, SortsByNameKindOrDate) {
    const struct {
        const char *name, *kind;
        uint32_t created;
    } items[] = {{"b", "z", 5},          {"\x95\x5C", "y", 6}, {"B", "", 0xF0000000},
                 {"a", "z", 0xF0000000}, {"b", "z", 5},        {"bb", "", 6}};
    const Names orders[] = {{"B2", "a3", "b0", "b4", "bb5",
                             "\x95\x5C"
                             "1"},
                            {"B2", "bb5",
                             "\x95\x5C"
                             "1",
                             "a3", "b0", "b4"},
                            {"B2", "a3", "bb5",
                             "\x95\x5C"
                             "1",
                             "b0", "b4"}};
    for (int16_t mode = 0; mode < 3; ++mode) {
        globals->sortMode = mode;
        FreeHandle(globals->rihList);
        globals->rihList = NewRihList();
        uint32_t number = 0;
        for (const auto& item : items) Add("", number++, item.name, item.kind, item.created);
        EXPECT_EQ(Rows(), orders[mode]);
    }
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

// A sort of everything at once must come to what inserting one by one comes to, whatever is equal.
TEST_F(RecordIndexTest, SortingEqualsInsertingOneByOne) {
    const char* const parts[] = {"", "a", "A", "\x95\x5C", "longer than eight", "longer than eighty", "\xFF"};
    uint32_t random = 1;
    const auto next = [&random](uint32_t below) {
        random = random * 1664525 + 1013904223;
        return (random >> 16) % below;
    };
    for (int16_t mode = -1; mode <= 3; ++mode) {
        for (const uint32_t count : {0u, 1u, 2u, 300u, 5000u}) { // each way of sorting
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
