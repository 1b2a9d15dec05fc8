// Files beside records: what the names become, and that no name leads elsewhere.  What survives faults is
// tested in tests/faults.
#include "plugin/store/linked_files.h"

#include <cstring>

#include "plugin/store/data_directories.h"
#include "plugin/store/store_names.h"
#include "tests/support/store_fixture.h"

namespace {

namespace fs = std::filesystem;

class LinkedFilesTest : public StoreTest {
protected:
    void Put(const fs::path& relative, const std::string& text) {
        fs::create_directories((root() / relative).parent_path());
        WriteFileBytes(root() / relative, Bytes(text.begin(), text.end()));
    }
    std::string TextOf(const fs::path& relative) {
        const Bytes bytes = BytesOfFile(root() / relative);
        return {bytes.begin(), bytes.end()};
    }
    // The pooled name that a stored file is given, or the result in words.
    std::string Resolve(int32_t number, const std::string& name) {
        const std::string pascalName = static_cast<char>(name.size()) + name;
        char path[kFullPathBytes];
        const int32_t result =
            ResolveLinkedFile("G", number, reinterpret_cast<const uint8_t*>(pascalName.c_str()), path);
        const std::string folder = std::string(globals->aidbfpath) + "\\_%%image\\";
        if (result != 0) return "error " + std::to_string(result);
        EXPECT_TRUE(std::string(path).starts_with(folder)) << path;
        return std::string(path).substr(folder.size());
    }
};

} // namespace

TEST_F(LinkedFilesTest, PooledNamesAreUniqueAndNotesSayThem) {
    const std::string longName = std::string(59, 'x') + ".tif";
    const std::string manyPoints = "1." + std::string(57, 'x') + ".tif";
    for (const char* number : {"0", "1", "2"}) {
        Put(fs::path("G.DAT") / number / "a.b.tif", number);
        Put(fs::path("G.DAT") / number / longName, number);
        Put(fs::path("G.DAT") / number / manyPoints, number);
    }
    EXPECT_EQ(Resolve(0, "a.b.tif"), "a.b.tif");
    EXPECT_EQ(Resolve(1, "a.b.tif"), "a_1.b.tif");
    EXPECT_EQ(Resolve(2, "a.b.tif"), "a_2.b.tif");
    EXPECT_EQ(Resolve(1, "a.b.tif"), "a_1.b.tif"); // by its note now
    EXPECT_EQ(TextOf("_%%image/a_2.b.tif"), "2");
    EXPECT_EQ(TextOf("G.DAT/1/a.lnk"), "orgn_fname = \"a.b.tif\"\r\ncopy_fname = \"a_1.b.tif\"\r\n");
    EXPECT_EQ(Resolve(0, longName), longName);
    EXPECT_EQ(Resolve(1, longName), std::string(57, 'x') + "_1.tif");
    EXPECT_EQ(Resolve(0, manyPoints), manyPoints);
    for (int times = 0; times < 2; ++times)
        EXPECT_EQ(Resolve(1, manyPoints), "1." + std::string(55, 'x') + "_1.tif"); // the note holds it whole
    EXPECT_EQ(Resolve(2, "nothing.tif"), "error 2");
    EXPECT_EQ(Resolve(1, "a.c"), "error -1"); // the note is about another file
}

TEST_F(LinkedFilesTest, NoNameLeadsOutOfTheImageFolder) {
    for (const char* name : {"..\\G.AID", "..", ". .", "a/b", "c:d", "..\\..\\x", "\x83\\\\b", ""}) {
        Put("G.AID", "group");
        Put("G.DAT/0/n.lnk", std::string("orgn_fname = \"n.tif\"\r\ncopy_fname = \"") + name + "\"\r\n");
        EXPECT_EQ(Resolve(0, "n.tif"), "error -1") << name;
        EXPECT_EQ(Resolve(1, name), "error -1") << name;
        EXPECT_EQ(DeleteDataFile((std::string(globals->aidbfpath) + "\\G.DAT\\0\\n.lnk").c_str()), 0);
        EXPECT_EQ(TextOf("G.AID"), "group") << name;
    }
    EXPECT_TRUE(IsPlainComponent("\x83\x5C.tif")); // its backslash is half a character
}

TEST_F(LinkedFilesTest, ATreeTakesItsPooledFilesAndNothingBehindLinks) {
    Put("_%%image/mine.tif", "mine");
    Put("_%%image/other.tif", "other");
    Put("G.DAT/0/m.lnk", "orgn_fname = \"m.tif\"\r\ncopy_fname = \"mine.tif\"\r\n");
    Put("G.DAT/0/below/file", "file");
    Put("kept/file", "kept");
    std::error_code noLinksHere;
    fs::create_directory_symlink(root() / "kept", root() / "G.DAT" / "0" / "link", noLinksHere);
    EXPECT_EQ(DeleteTree((std::string(globals->aidbfpath) + "\\G.DAT").c_str()), 0);
    EXPECT_FALSE(fs::exists(root() / "G.DAT"));
    EXPECT_FALSE(fs::exists(root() / "_%%image/mine.tif"));
    EXPECT_EQ(TextOf("_%%image/other.tif"), "other");
    EXPECT_EQ(TextOf("kept/file"), "kept");
}
