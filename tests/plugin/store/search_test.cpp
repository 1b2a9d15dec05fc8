#include "plugin/store/search.h"

#include <cstring>
#include <map>

#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"
#include "tests/support/store_fixture.h"

namespace {

struct Sought {
    const char* text;
    const char* key;
    int16_t caseFlag, widthFlag, wordFlag;
    int32_t found;
};

// Japanese texts are cp932 here.
constexpr Sought kSought[] = {
    {"abc", "ＡＢＣ", 0, 0, 0, 0},
    {"ABC", "ＡＢＣ", 0, 1, 0, -1},
    {"ＡＢＣ", "ＡＢＣ", 1, 1, 0, 0},
    {"ABC", "abc", 1, 0, 0, -1},
    {"xａｂｃ", "abc", 1, 0, 0, 1},
    {"ＡＢＣ", "ａｂｃ", 0, 1, 0, -1}, // case is told of single bytes
    {"表A", "A", 0, 0, 0, 2},
    {"表", "\\", 0, 0, 0, -1}, // the second byte of 表 is a backslash
    {"\\表\\", "\\", 0, 0, 0, 0},
    {"ソ￥", "\\", 0, 0, 0, 2},
    {"アイ", "ｱ", 0, 0, 0, -1}, // katakana aren't in the table
    {"ア・イ", "･", 0, 0, 0, 2},
    {"\x83\x82\xCC", "の", 0, 0, 0, -1}, // its bytes stand across two characters
    {"abcd", "bcx", 0, 0, 0, -1},
    {"ab", "abc", 0, 0, 0, -1},
    {"", "a", 0, 0, 0, -1},
    {"aab", "ab", 0, 0, 0, 1},
    {"表\x95", "\x95", 0, 0, 0, 2}, // a lead byte that dangles
    {"concat", "cat", 0, 0, 1, -1},
    {"cats", "cat", 0, 0, 1, -1},
    {"cat's", "cat", 0, 0, 1, 0},
    {"a cat", "cat", 0, 0, 1, 2},
    {"猫cat猫", "cat", 0, 0, 1, 2},
    {"concat cat", "cat", 0, 0, 1, 7},
    {"10", "1", 0, 0, 1, -1},
    {"１0", "1", 0, 0, 1, -1},      // what follows is a digit
    {"1０", "1", 0, 0, 1, 0},       // a double-byte digit is no digit here
    {"xｃａｔ", "cat", 0, 0, 1, 1}, // behind a letter, which was the whole word
};

} // namespace

TEST(SearchTextTest, FindsAsUsersMeanIt) {
    for (const Sought& sought : kSought) {
        EXPECT_EQ(FindInText(sought.text, sought.key, sought.caseFlag, sought.widthFlag, sought.wordFlag),
                  sought.found)
            << sought.key << " in " << sought.text << ", " << sought.caseFlag << sought.widthFlag
            << sought.wordFlag;
    }
    EXPECT_EQ(FindInText(nullptr, "a", 0, 0, 0), -1);
    EXPECT_EQ(FindInText("a", nullptr, 0, 0, 0), -1);
}

TEST(SearchTextTest, EachFullWidthFormEqualsItsHalf) {
    const std::string full =
        "０１２３４５６７８９ＡＢＣＤＥＦＧＨＩＪＫＬＭＮＯＰＱＲＳＴＵＶＷＸＹＺ"
        "ａｂｃｄｅｆｇｈｉｊｋｌｍｎｏｐｑｒｓｔｕｖｗｘｙｚ"
        "！”＃＄％＆’（）＝～｜￥［］｛｝＜＞＠＊＋－＿，．＾；：・";
    const std::string half =
        "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
        "!\"#$%&'()=~|\\[]{}<>@*+-_,.^;:\xA5";
    ASSERT_EQ(full.size(), 2 * half.size());
    std::map<std::string, char> pairs;
    for (size_t i = 0; i < half.size(); ++i) pairs[full.substr(2 * i, 2)] = half[i];
    ASSERT_EQ(pairs.size(), 92u);
    // All double-byte characters against all single bytes, told by case.
    for (int lead = 0x81; lead <= 0xFC; ++lead) {
        if (lead > 0x9F && lead < 0xE0) continue;
        for (int trail = 0x40; trail <= 0xFC; ++trail) {
            const std::string text = {static_cast<char>(lead), static_cast<char>(trail)};
            const auto pair = pairs.find(text);
            const char key[2] = {pair != pairs.end() ? pair->second : '-', 0};
            const bool matches = FindInText(text.c_str(), key, 1, 0, 0) == 0;
            ASSERT_EQ(matches, pair != pairs.end()) << lead << " " << trail;
        }
    }
}

namespace {

using Names = std::vector<std::string>;

class SearchTest : public StoreTest {
protected:
    void SetUp() override {
        std::filesystem::create_directories(root() / "F" / "S");
        MakeGroup("G", {"表示", "cat", "ＣＡＴ", "dog"});
        MakeGroup("\\F\\S\\H", {"concat", "Cat", "表"});
        MakeGroup("Search Result", {"cat"});
        MakeGroup("\\F\\B", {"cat", "b"});
    }
    Names Rows() {
        Names rows;
        for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
            const RihItem* item = RihItemOfRow(globals->rihList, row);
            rows.push_back(std::string(item->groupPath) + ":" + item->name + std::to_string(item->recNo));
        }
        return rows;
    }
    Names Search(const char* text, int16_t field = 0, int32_t (*run)() = RunSearch) {
        std::strcpy(globals->flCnvFnStr, text);
        globals->flCnvFnMode = field;
        EXPECT_EQ(run(), 0);
        return Rows();
    }
    Names Limit(const char* text, int16_t field = 0) { return Search(text, field, RunLimit); }
    // What reading the records one by one and adding each hit comes to.
    Names SlowSearch() {
        HandleOwner list(NewRihList());
        for (const char* group : {"G", "\\F\\B", "\\F\\S\\H"}) {
            for (int32_t number = 0; number < static_cast<int32_t>(CountRecords(group)); ++number) {
                AidbReadRecord(group, number, nullptr, kReadHeader, true);
                const RecordHeader& header = cur().header;
                const char* fields[] = {header.name, header.kind, header.comment};
                if (FindInText(fields[globals->flCnvFnMode], globals->flCnvFnStr, globals->flCnvCase,
                               globals->flCnvKanji, globals->flCnvWord) < 0)
                    continue;
                AidbAddItemRIHList(&list.get(), group, static_cast<uint32_t>(number), header.name,
                                   header.kind, header.created);
            }
        }
        std::swap(globals->rihList, list.get());
        const Names rows = Rows();
        std::swap(globals->rihList, list.get());
        return rows;
    }
};

} // namespace

TEST_F(SearchTest, FindsInAllGroupsAndNowhereElse) {
    EXPECT_EQ(Search("cat"),
              (Names{"\\F\\S\\H:Cat1", "G:cat1", "\\F\\B:cat0", "\\F\\S\\H:concat0", "G:ＣＡＴ2"}));
    EXPECT_STREQ(globals->aidbfname, kSearchResult);
    EXPECT_EQ(globals->findMode, kFindSearchResult);
    EXPECT_STREQ(cur().header.name, "表"); // the last header read
    EXPECT_EQ(globals->curRecordNo, 2);
    EXPECT_EQ(Search("").size(), 9u);
    EXPECT_EQ(Search("\\"), Names{});
    EXPECT_EQ(Search("表"), (Names{"\\F\\S\\H:表2", "G:表示0"}));
}

TEST_F(SearchTest, EqualsReadingOneByOneInEveryModeAndOrder) {
    for (const char* text : {"cat", "kind of c", "ＡＢＯＵＴ c", "示"}) {
        for (int flags = 0; flags < 72; ++flags) {
            globals->flCnvCase = flags & 1;
            globals->flCnvKanji = flags >> 1 & 1;
            globals->flCnvWord = flags >> 2 & 1;
            globals->sortMode = static_cast<int16_t>(flags / 8 % 3);
            const Names found = Search(text, static_cast<int16_t>(flags / 24));
            ASSERT_EQ(found, SlowSearch()) << text << " " << flags;
        }
    }
}

TEST_F(SearchTest, LimitNarrowsWhatWasFound) {
    Search("cat");
    globals->sortMode = 2;
    globals->flCnvCase = 1;
    globals->flCnvKanji = 1;
    // Newest first; the date of a record here is its name's first byte.
    EXPECT_EQ(Limit("kind of c", 1), (Names{"G:cat1", "\\F\\B:cat0", "\\F\\S\\H:concat0"}));
    EXPECT_EQ(Limit("about cat", 2), (Names{"G:cat1", "\\F\\B:cat0"}));
    EXPECT_STREQ(cur().header.name, "concat"); // the last header read, a hit or not
    // What has gone meanwhile is kept out, and an empty text keeps all else.
    std::filesystem::remove(root() / "F" / "B.AID");
    std::strcpy(globals->flCnvFnStr, "");
    EXPECT_EQ(RunLimit(), 1);
    EXPECT_EQ(Rows(), Names{"G:cat1"});
}

TEST_F(SearchTest, LimitInAFolderTakesTheFoldersRecords) {
    SelectGroup("\\F\\A Folder is Selected");
    ASSERT_EQ(globals->findMode, kFindFolder);
    BuildFolderIndex(globals->aidbfpath, "F", "");
    ASSERT_EQ(RihCount(globals->rihList), 2);
    EXPECT_EQ(Limit("cat"), Names{"\\F\\B:cat0"});
    EXPECT_EQ(globals->findMode, kFindSearchResult);
    SelectGroup("G");
    EXPECT_EQ(Limit("cat"), Names{}); // nothing was found before
}

TEST_F(SearchTest, ALongTextIsCutBetweenCharacters) {
    MakeCurRecord("x");
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
    std::strcpy(header->name, (std::string(61, 'x') + "表").c_str());
    ASSERT_EQ(WriteRecord("Long", -1), 0);
    EXPECT_EQ(Search((std::string(61, 'x') + "表示").c_str()).size(), 1u);
    EXPECT_EQ(std::strlen(globals->flCnvFnStr), 65u);
}

// Records behind the damage can't be searched, and the caller learns of it.
TEST_F(SearchTest, DamageIsTold) {
    const auto last = root() / "F" / "S" / "H.AID";
    std::filesystem::resize_file(last, std::filesystem::file_size(last) - 1);
    std::strcpy(globals->flCnvFnStr, "");
    EXPECT_EQ(RunSearch(), 1);
    EXPECT_EQ(RihCount(globals->rihList), 8);
    EXPECT_EQ(globals->curRecord, nullptr);
}
