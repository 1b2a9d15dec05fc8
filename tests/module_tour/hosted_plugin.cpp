#include "tests/module_tour/hosted_plugin.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>

#include "app/sample_document.h"
#include "workbench/frame/frame_looks.h"

namespace fs = std::filesystem;

namespace {

constexpr char kModuleFile[] = VELQUORNE_MODULE_FILE;
constexpr char kSettingsFile[] = "Velquorne_CC.ini";
constexpr SIZE kDesktop{1024, 768}; // as large as a machine without a screen has it

workbench::CanvasPictures WhitePages() {
    return {.draw = [](const workbench::Document&, const workbench::View&, SIZE size, uint32_t* pixels,
                       const auto&) { std::fill_n(pixels, size.cx * size.cy, 0xFFFFFFu); },
            .paintsAt = {}};
}

} // namespace

std::optional<workbench::PictureSize> EqualPictures::SizeOf(const std::string& file) {
    if (!fs::exists(fs::u8path(file))) return std::nullopt;
    return workbench::PictureSize{kSamplePictureWidth, kSamplePictureHeight};
}

HostedPlugin::HostedPlugin(bool windows) : desktop_(kDesktop), plugin_(host_, std::string(kModuleFile)) {
    host_.SetPainter(&painter_);
    host_.SetPictureFiles(&pictures_);
    fonts_.Add("DejaVuSans-Book", 1);
    fonts_.Add("IPAGothic-Regular", 100);
    host_.SetFontList(&fonts_);
    host_.SetTheme(workbench::LightTheme());
    EXPECT_TRUE(plugin_.ready()) << plugin_.error();
    EXPECT_EQ(plugin_.StartUp(), kHostNoError);
    if (!windows) return;
    workspace_ = std::make_unique<workbench::Workspace>(host_, plugin_, kDesktop, WhitePages(),
                                                        workbench::WorkspaceFiles{});
    hands_ = std::make_unique<Hands>(desktop_, workspace_->windows());
    workspace_->Begin();
    EXPECT_EQ(host_.panels().size(), 1u);
}

HostedPlugin::~HostedPlugin() {
    if (plugin_.running()) ShutDown();
    hands_.reset();
    workspace_.reset();
    host_.Close();
    host_.CheckBalance(true);
    for (const std::string& fault : host_.faults()) ADD_FAILURE() << fault;
}

void HostedPlugin::ShutDown() {
    if (workspace_) workspace_->windows().StopTimers();
    EXPECT_EQ(plugin_.ShutDown(), kHostNoError);
}

workbench::PanelFrame& HostedPlugin::frame() {
    return *workspace_->windows().FrameOf(*host_.panels().front());
}

bool HostedPlugin::IsModuleInProcess() {
    return workbench::Library::IsInProcess(kModuleFile);
}

void ForgetSettings() {
    LPITEMIDLIST list = nullptr;
    char documents[MAX_PATH] = "";
    ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_PERSONAL, &list), S_OK);
    ASSERT_TRUE(SHGetPathFromIDListA(list, documents));
    CoTaskMemFree(list);
    // Where documents could be redirected there is nothing of this name.
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(documents, ignored)) {
        if (entry.path().filename() == kSettingsFile) DeleteFileA(entry.path().string().c_str());
    }
}
