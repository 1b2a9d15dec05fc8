// A stored record edited: in its place, into another group, and while others change the group.
#include <cstring>

#include "plugin/dialogs/entry_dialog.h"
#include "plugin/dialogs/folder_commands.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/search.h"
#include "plugin/store/store_names.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/store_fixture.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class EditRecordTest : public PanelFixture {
protected:
    void SetUp() override {
        PanelFixture::SetUp();
        globals->language = 1;
        MakeGroup("G", {"a", "b", "c"});
        MakeGroup("\\F\\H", {"x"});
        fs::create_directories(rootOnDisk() / "G.DAT" / "1");
        fs::create_directories(rootOnDisk() / "G.DAT" / "2" / "of c");
        BuildThePanel();
        SelectGroup("G");
        RefreshAfterFolderChange(panel());
    }
    RecordHeader HeaderOf(const char* group, int32_t number) {
        HandleOwner record(NewRecord());
        AidbReadRecord(group, number, &record.get(), kReadHeader, true);
        RecordHeader header;
        std::memcpy(&header, record.bytes(), sizeof header);
        return header;
    }
    int32_t Row() { return GetSelectedRow(control(kRecordList)); }

    DialogAnswers answers_;
};

} // namespace

TEST_F(EditRecordTest, InPlace) {
    answers_.Next([](HWND dialog) {
        EXPECT_EQ(TextOf(dialog, 7), "a");
        Type(dialog, 7, "z");
        Type(dialog, 16, "about");
        Press(dialog, 1);
    });
    SelectListRow(control(kRecordList), 0);
    EXPECT_EQ(EditRecord(panel(), globals->aidbfname, 0), 0);
    EXPECT_EQ(NamesIn("G"), (Names{"z", "b", "c"}));
    EXPECT_STREQ(HeaderOf("G", 0).comment, "about");
    EXPECT_EQ(HeaderOf("G", 0).created, StampOfName("a"));
    EXPECT_NE(HeaderOf("G", 0).modified, StampOfName("a"));
    EXPECT_EQ(Row(), 2); // by name it is the last now
    answers_.Next([](HWND dialog) {
        Type(dialog, 7, "never");
        Press(dialog, 2);
    });
    EXPECT_EQ(EditRecord(panel(), "G", 0), 0);
    EXPECT_EQ(NamesIn("G"), (Names{"z", "b", "c"}));
    EXPECT_TRUE(host().alerts().empty());
}

TEST_F(EditRecordTest, IntoAnotherGroup) {
    answers_.Next([](HWND dialog) {
        Choose(dialog, 10, "F");
        Type(dialog, 7, "B");
        Press(dialog, 1);
    });
    EXPECT_EQ(EditRecord(panel(), "G", 1), 0);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "c"}));
    EXPECT_EQ(NamesIn("\\F\\H"), (Names{"x", "B"}));
    EXPECT_EQ(HeaderOf("\\F\\H", 1).modified, StampOfName("b")); // both stamps stay
    EXPECT_EQ(HeaderOf("\\F\\H", 1).created, StampOfName("b"));
    EXPECT_TRUE(fs::exists(rootOnDisk() / "F" / "H.DAT" / "1"));
    EXPECT_TRUE(fs::exists(rootOnDisk() / "G.DAT" / "1" / "of c"));
    EXPECT_STREQ(globals->aidbfname, "\\F\\H");
    EXPECT_EQ(GetRowCount(control(kRecordList)), 2);
    EXPECT_EQ(Row(), FindRihItem("\\F\\H", 1));

    // In a search result the panel stays where it is, and the result follows.
    globals->flCnvFnStr[0] = '\0';
    RunSearch();
    RefreshAfterFolderChange(panel());
    answers_.Next([](HWND dialog) {
        Choose(dialog, 10, "None");
        Press(dialog, 1);
    });
    EXPECT_EQ(EditRecord(panel(), "\\F\\H", 0), 0);
    EXPECT_STREQ(globals->aidbfname, kSearchResult);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "c", "x"}));
    EXPECT_EQ(Row(), FindRihItem("G", 2));
    EXPECT_EQ(GetRowCount(control(kRecordList)), 4);
}

TEST_F(EditRecordTest, NotWhatItWas) {
    const fs::path file = rootOnDisk() / "G.AID";
    const Bytes before = BytesOfFile(file);
    ASSERT_EQ(DeleteRecord("G", 0), 0);
    const Bytes after = BytesOfFile(file);
    for (const char* place : {"None", "F"}) {
        host().ClearAlerts();
        WriteFileBytes(file, before);
        answers_.Next([=](HWND dialog) {
            EXPECT_EQ(TextOf(dialog, 7), "a");
            Choose(dialog, 10, place);
            Type(dialog, 7, "mine");
            WriteFileBytes(file, after); // another machine, while the dialog stands
            Press(dialog, 1);
        });
        EXPECT_EQ(EditRecord(panel(), "G", 0), 0);
        EXPECT_EQ(NamesIn("G"), (Names{"b", "c"}));
        EXPECT_EQ(NamesIn("\\F\\H"), Names{"x"});
        ASSERT_EQ(host().alerts().size(), 1u);
        EXPECT_NE(host().alerts()[0].text.find("by another program"), std::string::npos);
    }
    EXPECT_EQ(EditRecord(panel(), "G", 7), 0); // no such record, and no dialog
    EXPECT_EQ(host().alerts().size(), 2u);
}

TEST_F(EditRecordTest, WhatTheStoreRefusesIsTold) {
    const std::string file = StorePathOf(rootOnDisk() / "F" / "H.AID");
    HANDLE other = INVALID_HANDLE_VALUE;
    answers_.Next([&](HWND dialog) {
        Choose(dialog, 10, "F");
        other = CreateFileA(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                            nullptr);
        Press(dialog, 1);
    });
    EXPECT_EQ(EditRecord(panel(), "G", 1), 0);
    CloseHandle(other);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "b", "c"}));
    EXPECT_EQ(NamesIn("\\F\\H"), Names{"x"});
    EXPECT_STREQ(globals->aidbfname, "G");
    ASSERT_EQ(host().alerts().size(), 1u);
    EXPECT_EQ(host().alerts()[0].text.substr(0, 26), "The database is in use by ");
}
