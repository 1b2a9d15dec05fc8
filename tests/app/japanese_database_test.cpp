#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <numeric>

#include "plugin/store/record_layout.h"
#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

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

std::u32string CodePoints(const std::string& utf8) {
    const iconv_t converter = iconv_open("UTF-32LE", "UTF-8");
    std::string in = utf8;
    std::u32string out(utf8.size(), 0);
    char* from = in.data();
    auto* to = reinterpret_cast<char*>(out.data());
    size_t left = in.size(), room = out.size() * 4;
    EXPECT_NE(iconv(converter, &from, &left, &to, &room), static_cast<size_t>(-1)) << utf8;
    iconv_close(converter);
    out.resize(out.size() - room / 4);
    return out;
}

struct SearchWay {
    bool tellsCase, tellsWidth, wholeWords;
};

char32_t Folded(char32_t code, const SearchWay& way) {
    if (!way.tellsWidth) {
        if (code == U'’') code = U'\'';
        if (code == U'”') code = U'"';
        if (code == U'￥') code = U'\\';
        if (code == U'・') code = U'･';
        constexpr std::u32string_view kNoPairs = U"＂＇／？＼｀";
        if (code > 0xFF00 && code < 0xFF5F && kNoPairs.find(code) == kNoPairs.npos) code -= 0xFEE0;
    }
    return !way.tellsCase && code >= U'A' && code <= U'Z' ? code + 0x20 : code;
}

bool IsWord(char32_t code) {
    return (code >= U'0' && code <= U'9') || (code >= U'A' && code <= U'Z') || (code >= U'a' && code <= U'z');
}

/// The search's rule over code points, tried at every place.
bool Finds(const std::string& utf8Text, const std::string& utf8Key, const SearchWay& way) {
    const std::u32string text = CodePoints(utf8Text), key = CodePoints(utf8Key);
    if (key.empty()) return true;
    for (size_t at = 0; at + key.size() <= text.size(); ++at) {
        const size_t end = at + key.size();
        if (way.wholeWords && at > 0 && IsWord(text[at - 1]) && IsWord(text[at])) continue;
        if (way.wholeWords && end < text.size() && IsWord(text[end])) continue;
        if (std::equal(key.begin(), key.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                       [&](char32_t a, char32_t b) { return Folded(a, way) == Folded(b, way); }))
            return true;
    }
    return false;
}

std::vector<int> Numbers(const json& records) {
    std::vector<int> numbers;
    for (const json& record : records) numbers.push_back(record["number"]);
    return numbers;
}

class JapaneseDatabaseTest : public testing::Test {
protected:
    /// Every record has a picture beside it; all pictures have one name.
    void SetUp() override {
        setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
        cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 2, 2);
        ASSERT_EQ(cairo_surface_write_to_png(image, Path("ソ表.png").c_str()), CAIRO_STATUS_SUCCESS);
        cairo_surface_destroy(image);
        WriteText(Path("in.svg"),
                  R"(<svg xmlns="http://www.w3.org/2000/svg" width="9pt" height="9pt">)"
                  R"(<rect width="5" height="5"/><image href="ソ表.png" width="5" height="5"/></svg>)");
        for (const Texts& texts : kRecords) {
            const auto stored = Run({"register", Path("in.svg"), "--group", kGroup, "--name", texts.name,
                                     "--kind", texts.kind, "--comment", texts.comment});
            ASSERT_EQ(stored.code, 0) << stored.err;
            ASSERT_EQ(stored.err, "");
        }
    }

    fs::path root() const { return folder.path() / "データ"; }
    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }

    CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin() + 1, {"--db", root().string()});
        return RunCommand(words);
    }

    json Records(std::vector<std::string> words) {
        words.push_back("--json");
        const CommandResult result = Run(words);
        EXPECT_EQ(result.code, 0) << result.err;
        return json::parse(result.out)["records"];
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

    TemporaryFolder folder;
};

TEST_F(JapaneseDatabaseTest, ListsSortsAndFindsAsASecondWayDoes) {
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
    std::vector<uint32_t> dates;
    for (size_t number = 0; number < kRecordsThere; ++number) {
        dates.push_back(0xC0000000U + static_cast<uint32_t>(number * 5 % 7));
        Overwrite(number, offsetof(RecordHeader, created),
                  {'\xC0', '\0', '\0', static_cast<char>(dates.back() & 0xFF)});
    }
    const json listed = Records({"list", kGroup});
    ASSERT_EQ(listed.size(), kRecordsThere);
    for (size_t number = 0; number < kRecordsThere; ++number) {
        EXPECT_EQ(listed[number]["name"], kRecords[number].name);
        EXPECT_EQ(listed[number]["kind"], kRecords[number].kind);
        EXPECT_EQ(listed[number]["comment"], kRecords[number].comment);
    }

    const auto sorted = [&](auto before) {
        std::vector<int> numbers(kRecordsThere);
        std::iota(numbers.begin(), numbers.end(), 0);
        std::ranges::stable_sort(numbers, before);
        return numbers;
    };
    const auto byName = [&](auto a, auto b) {
        return names[static_cast<size_t>(a)] < names[static_cast<size_t>(b)];
    };
    EXPECT_EQ(Numbers(Records({"list", kGroup, "--sort", "name"})), sorted(byName));
    EXPECT_EQ(Numbers(Records({"list", kGroup, "--sort", "kind"})), sorted([&](auto a, auto b) {
                  const std::string &first = kinds[static_cast<size_t>(a)],
                                    &second = kinds[static_cast<size_t>(b)];
                  return first != second ? first < second : byName(a, b);
              }));
    EXPECT_EQ(Numbers(Records({"list", kGroup, "--sort", "date"})), sorted([&](auto a, auto b) {
                  const uint32_t first = dates[static_cast<size_t>(a)],
                                 second = dates[static_cast<size_t>(b)];
                  return first != second ? first > second : byName(a, b);
              }));

    const char* const kKeys[] = {"",  "表", "ソ",   "\\", "abc", "ＡＢＣ", "123", "ｱ", "ア",
                                 "･", "・", "（括", "\"", "十",  "~",      "-",   "①", "a"};
    const std::pair<const char*, std::string Texts::*> kFields[] = {
        {"name", &Texts::name}, {"kind", &Texts::kind}, {"comment", &Texts::comment}};
    for (const char* key : kKeys) {
        for (const auto& [field, text] : kFields) {
            for (int options = 0; options < 8; ++options) {
                const SearchWay way = {(options & 1) != 0, (options & 2) != 0, (options & 4) != 0};
                std::vector<std::string> words = {"search", "--field", field, key};
                if (way.tellsCase) words.push_back("--case");
                if (way.tellsWidth) words.push_back("--width");
                if (way.wholeWords) words.push_back("--word");
                SCOPED_TRACE(std::string(key) + " in " + field + ", " + std::to_string(options));
                std::vector<int> expected, within;
                for (size_t i = 0; i < kRecordsThere; ++i) {
                    if (!Finds(kRecords[i].*text, key, way)) continue;
                    expected.push_back(static_cast<int>(i));
                    if (Finds(kRecords[i].kind, "ソ", way)) within.push_back(static_cast<int>(i));
                }
                EXPECT_THAT(Numbers(Records(words)), testing::UnorderedElementsAreArray(expected));
                if (options != 0) continue;
                words.insert(words.end(), {"--within", "kind=ソ"});
                EXPECT_THAT(Numbers(Records(words)), testing::UnorderedElementsAreArray(within));
            }
        }
    }
}

/// What a user may do with these records, and after each step every record is the one it was, with its own
/// picture, and the database sound.
TEST_F(JapaneseDatabaseTest, MovesDeletesAndPlacesWithoutMistakingOneForAnother) {
    const std::string other = "表\\ソ"; // backslashes separate as slashes do
    struct Step {
        std::vector<std::string> words;
        size_t here, there;
    };
    const Step steps[] = {
        {{"place", kGroup, "0", "--at", "0,0", "--out", Path("out.json")}, 18, 0},
        {{"place", kGroup, "17", "--at", "0,0", "--out", Path("out.svg")}, 18, 0},
        {{"edit", kGroup, "17", "--to", other}, 17, 1},
        {{"edit", kGroup, "1", "--to", other, "--name", "能ソ表"}, 16, 2},
        {{"delete", kGroup, "0", "3", "15", "--yes"}, 13, 2},
        {{"place", other, "1", "--at", "0,0", "--out", Path("out.json")}, 13, 2},
        {{"edit", other, "1", "--kind", "ソ"}, 13, 2},
        {{"edit", other, "0", "--to", kGroup}, 14, 1},
        {{"delete", other, "0", "--yes"}, 14, 0},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(testing::PrintToString(step.words));
        const CommandResult result = Run(step.words);
        ASSERT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(Records({"list", kGroup}).size(), step.here);
        if (fs::exists(root() / "表/ソ.AID")) {
            EXPECT_EQ(Records({"list", other}).size(), step.there);
        }
        const CommandResult check = Run({"check"});
        EXPECT_EQ(check.code, 0) << check.out;
    }
    std::vector<std::string> left;
    for (const json& record : Records({"list", kGroup})) left.push_back(record["name"]);
    std::vector<std::string> expected;
    for (const size_t number : {2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17})
        expected.push_back(kRecords[number].name);
    EXPECT_EQ(left, expected);
    // The placed records that were deleted took their pictures along.
    EXPECT_EQ(std::distance(fs::directory_iterator(root() / "_%%image"), {}), 1);
    const CommandResult exported = Run({"export", "--out", Path("out"), "--as", "pdf"});
    EXPECT_EQ(exported.code, 0) << exported.err;
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("out/予定表/ソース/能")), {}), 14);
}

} // namespace
