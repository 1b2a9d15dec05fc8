#include "tests/support/panel_fixture.h"

#include "plugin/store/cp932.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "workbench/frame/frame_looks.h"

namespace {

constexpr SIZE kDesktop{1280, 800};

} // namespace

PanelFixture::PanelFixture() : desktop_(kDesktop) {}

void PanelFixture::SetUp() {
    PluginFixture::SetUp();
    windows_ = std::make_unique<workbench::HostWindows>(host(), plugin(), kDesktop);
    windows_->showAlerts = false; // noted, and questions answered by Host::AnswerNext
    host().SetTheme(workbench::LightTheme());
}

void PanelFixture::TearDown() {
    PluginFixture::TearDown();
    windows_.reset();
}

void PanelFixture::BuildThePanel() {
    ASSERT_EQ(plugin().Notify("AI Application Started Notifier"), kHostNoError);
    ASSERT_EQ(host().panels().size(), 1u);
    ASSERT_NE(panel(), nullptr);
}

void PanelFixture::Tick() {
    ASSERT_EQ(host().timers().size(), 1u);
    EXPECT_EQ(plugin().Tick(host().timers().front()->handle), kHostNoError);
}

void PanelFixture::MakeFoldersAbove(const std::string& path) {
    const char* const begin = path.c_str();
    for (const char* at = begin; *at != '\0'; at += CharacterBytes(at)) {
        if (*at != '\\' || at == begin) continue;
        CreateDirectoryA((globals->aidbfpath + std::string(begin, at)).c_str(), nullptr);
    }
}

void PanelFixture::MakeGroup(const std::string& group, const std::vector<std::string>& names) {
    MakeFoldersAbove(group);
    if (names.empty()) {
        const HFILE file = _lcreat((std::string(globals->aidbfpath) + "\\" + group + ".AID").c_str(), 0);
        ASSERT_NE(file, HFILE_ERROR) << group;
        _lclose(file);
    }
    for (const std::string& name : names) {
        FreeHandle(globals->curRecord);
        globals->curRecord = NewRecord();
        globals->curRecordNo = -1;
        uint8_t* bytes = BlockBytes(globals->curRecord);
        auto* header = reinterpret_cast<RecordHeader*>(bytes);
        CopyText(header->name, sizeof header->name, name.c_str());
        CopyText(header->kind, sizeof header->kind, "kind");
        CopyText(header->comment, sizeof header->comment, "comment");
        header->boundsTop = header->boundsRight = 100 * 65536;
        header->created = header->modified = StampOfName(name);
        const uint32_t color = ColorOfName(name);
        for (size_t at = kPreviewOffset; at < kObjectsOffset; at += 4) {
            bytes[at + 1] = static_cast<uint8_t>(color >> 16);
            bytes[at + 2] = static_cast<uint8_t>(color >> 8);
            bytes[at + 3] = static_cast<uint8_t>(color);
        }
        ASSERT_EQ(WriteRecord(group.c_str(), -1), 0) << group;
    }
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    globals->curRecordNo = -1;
}

std::vector<std::string> PanelFixture::NamesIn(const char* group) {
    std::vector<std::string> names;
    for (uint32_t number = 0; number < CountRecords(group); ++number) {
        HandleOwner record(NewRecord());
        AidbReadRecord(group, static_cast<int32_t>(number), &record.get(), kReadHeader, true);
        names.emplace_back(reinterpret_cast<const RecordHeader*>(record.bytes())->name);
    }
    return names;
}

uint32_t ColorOfName(const std::string& name) {
    uint32_t color = 0;
    for (const char byte : name) color = color * 131 + static_cast<uint8_t>(byte);
    return color & 0x7F7F7F;
}

uint32_t StampOfName(const std::string& name) {
    return 3000000000u + static_cast<uint8_t>(name[0]);
}
