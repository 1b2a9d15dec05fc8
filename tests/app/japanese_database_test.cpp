#include <gmock/gmock.h>
#include <iconv.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <numeric>

#include "plugin/store/record_layout.h"
#include "tests/app/run_command.h"

namespace {

using nlohmann::json;

struct Texts {
    std::string name, kind, comment;
};

/// Second bytes of 0x5C and of letters, half-width and full-width forms, signs with several codes.
const Texts kRecords[] = {
    {"表", "ソ連", "能力十分"},
    {"ソ", "表", "C:\\表\\ソ"},
    {"能登", "", "予定"},
    {"ABC", "ソ連", "abc ABCD"},
    {"ＡＢＣ", "ソ", "ａｂｃ"},
    {"abc", "表", "Ａｂｃ　１２３"},
    {"ａｂｃ", "能", "123"},
    {"ｱｲｳ", "ｿ", "ﾊﾟﾋﾟ"},
    {"アイウ", "ソ", "パピ"},
    {"髙橋", "表", "髙・高"},
    {"纊", "能", "∪①㈱"},
    {"∪", "能", "纊"},
    {"①㈱№", "", "･ ・"},
    {"暴噂浬欺", "圭構蚕", "十"},
    {"貼曾箪禄", "申", "ソABC表 ABC"},
    {"“引用”（括弧）", "～ー－", "￥"},
    {"\"引用\"(括弧)", "", "\\"},
    {"表", "ソ連", "ABCソABC"},
};
constexpr size_t kRecordsThere = std::size(kRecords);
constexpr char kGroup[] = "予定表/ソース/能";

/// By the C library's tables, not the database's.
std::string Cp932(const std::string& utf8) {
    const iconv_t converter = iconv_open("CP932", "UTF-8");
    std::string in = utf8, out(utf8.size() + 1, '\0');
    char* from = in.data();
    char* to = out.data();
    size_t left = in.size(), room = out.size();
    EXPECT_NE(iconv(converter, &from, &left, &to, &room), static_cast<size_t>(-1)) << utf8;
    iconv_close(converter);
    out.resize(out.size() - room);
    return out;
}

class JapaneseDatabaseTest : public CommandTest {
protected:
    void SetUp() override {
        WriteText(Path("in.svg"),
                  R"(<svg xmlns="http://www.w3.org/2000/svg"><rect width="5" height="5"/></svg>)");
        for (const Texts& texts : kRecords)
            Done({"register", Path("in.svg"), "--group", kGroup, "--name", texts.name, "--kind", texts.kind,
                  "--comment", texts.comment});
    }

    /// The numbers of the records that a command lists.
    std::vector<int> Listed(std::vector<std::string> words) {
        words.push_back("--json");
        const json records = json::parse(Done(words).out)["records"];
        std::vector<int> numbers;
        for (const json& record : records) numbers.push_back(record["number"]);
        return numbers;
    }

    /// Writes over a field of the group's records, as another machine may have stored it.
    void Overwrite(size_t number, size_t offset, const std::string& bytes) {
        std::fstream file(root() / (std::string(kGroup) + ".AID"),
                          std::ios::in | std::ios::out | std::ios::binary);
        size_t place = kCountBytes;
        for (size_t i = 0; i < number; ++i) {
            unsigned char size[4];
            file.seekg(static_cast<std::streamoff>(place + offsetof(RecordHeader, size)));
            file.read(reinterpret_cast<char*>(size), 4);
            place += static_cast<size_t>(size[0]) << 24 | static_cast<size_t>(size[1]) << 16 |
                     static_cast<size_t>(size[2]) << 8 | size[3];
        }
        file.seekp(static_cast<std::streamoff>(place + offset));
        file << bytes;
    }
};

TEST_F(JapaneseDatabaseTest, ListsAndSortsAsASecondWayDoesAndFindsByEachOption) {
    // Codes of other makers for the same signs: shown the same, sorted and found by their own bytes.
    std::vector<std::string> names, kinds;
    for (const Texts& texts : kRecords) {
        names.push_back(Cp932(texts.name));
        kinds.push_back(Cp932(texts.kind));
    }
    ASSERT_EQ(names[9].substr(0, 2), "\xFB\xFC");
    ASSERT_EQ(names[10], "\xFA\x5C");
    ASSERT_EQ(names[11], "\x81\xBE");
    names[9].replace(0, 2, "\xEE\xE0");
    names[10] = "\xED\x40";
    names[11] = "\x87\x9C";
    for (size_t number = 9; number < 12; ++number)
        Overwrite(number, offsetof(RecordHeader, name), names[number]);
    for (size_t number = 0; number < kRecordsThere; ++number)
        Overwrite(number, offsetof(RecordHeader, created), {'\xC0', '\0', '\0', static_cast<char>(number)});
    const json listed = Records(kGroup);
    ASSERT_EQ(listed.size(), kRecordsThere);
    for (size_t number = 0; number < kRecordsThere; ++number) {
        EXPECT_EQ(listed[number]["name"], kRecords[number].name);
        EXPECT_EQ(listed[number]["kind"], kRecords[number].kind);
        EXPECT_EQ(listed[number]["comment"], kRecords[number].comment);
    }

    std::vector<int> numbers(kRecordsThere);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::ranges::stable_sort(numbers, {}, [&](int number) { return names[static_cast<size_t>(number)]; });
    EXPECT_EQ(Listed({"list", kGroup, "--sort", "name"}), numbers);
    std::ranges::stable_sort(numbers, {}, [&](int number) { return kinds[static_cast<size_t>(number)]; });
    EXPECT_EQ(Listed({"list", kGroup, "--sort", "kind"}), numbers);
    std::ranges::sort(numbers, std::greater());
    EXPECT_EQ(Listed({"list", kGroup, "--sort", "date"}), numbers) << "the newest first";

    const std::pair<std::vector<std::string>, std::vector<int>> kSearches[] = {
        {{"search", "--field", "name", "abc"}, {3, 4, 5, 6}},
        {{"search", "--field", "name", "--case", "abc"}, {5, 6}},
        {{"search", "--field", "name", "--width", "abc"}, {3, 5}},
        {{"search", "--field", "kind", "\u8868"}, {1, 5, 9}},
        {{"search", "--field", "comment", "12"}, {5, 6}},
        {{"search", "--field", "comment", "--word", "12"}, {5}}, // a full-width digit ends a word
        {{"search", "--field", "name", "abc", "--within", "kind=\u30BD"}, {3, 4}},
    };
    for (const auto& [words, expected] : kSearches)
        EXPECT_THAT(Listed(words), testing::UnorderedElementsAreArray(expected))
            << testing::PrintToString(words);
}

} // namespace
