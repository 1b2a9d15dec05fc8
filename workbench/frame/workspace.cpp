#include "workbench/frame/workspace.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "workbench/document/undo_history.h"
#include "workbench/frame/alert_window.h"
#include "workbench/frame/frame_looks.h"
#include "workbench/frame/name_dialog.h"
#include "workbench/frame/progress_window.h"

namespace workbench {

namespace {

constexpr char kHelpGroup[] = "About";
constexpr LONG kWindowMargin = 12;
constexpr LONG kLayersWidth = 220, kLayersHeight = 150;
constexpr LONG kPanelRoom = 452; ///< kept free on the right, for panels

RECT DocumentPlace(SIZE size) {
    return {kWindowMargin, kBarHeight + kWindowMargin, std::max(size.cx - kPanelRoom, kWindowMargin + 200),
            std::max(size.cy - kWindowMargin, LONG{kBarHeight + 200})};
}

RECT LayersPlace(SIZE size) {
    return {size.cx - kLayersWidth - kWindowMargin, size.cy - kLayersHeight - kWindowMargin,
            size.cx - kWindowMargin, size.cy - kWindowMargin};
}

std::string FileNameOf(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// Another extension for a path whose last part has one, or has none.
std::string WithExtension(const std::string& path, const std::string& extension) {
    const size_t name = path.size() - FileNameOf(path).size();
    const size_t dot = path.rfind('.');
    return (dot == std::string::npos || dot <= name ? path : path.substr(0, dot)) + extension;
}

bool EndsWith(const std::string& text, const char* end) {
    const size_t length = std::strlen(end);
    return text.size() >= length && text.compare(text.size() - length, length, end) == 0;
}

PopupItem Item(int number, std::string text, bool enabled = true, bool marked = false) {
    return {.number = number,
            .text = std::move(text),
            .separator = false,
            .marked = marked,
            .enabled = enabled,
            .items = {}};
}

PopupItem Separator() {
    return {.number = 0, .text = {}, .separator = true, .marked = false, .enabled = false, .items = {}};
}

/// Control and a key, but for Delete and Escape, which stand alone.
struct Shortcut {
    WPARAM key;
    bool control;
    int command;
};
constexpr Shortcut kShortcuts[] = {
    {'N', true, kMenuNew},
    {'O', true, kMenuOpen},
    {'S', true, kMenuSave},
    {'W', true, kMenuClose},
    {'Q', true, kMenuQuit},
    {'Z', true, kMenuUndo},
    {'Y', true, kMenuRedo},
    {'A', true, kMenuSelectAll},
    {VK_ESCAPE, false, kMenuSelectNone},
    {VK_DELETE, false, kMenuDelete},
    {VK_BACK, false, kMenuDelete},
    {0xBB, true, kMenuZoomIn}, // + on the main keys
    {0x6B, true, kMenuZoomIn},
    {0xBD, true, kMenuZoomOut},
    {0x6D, true, kMenuZoomOut},
    {'0', true, kMenuWholePage},
    {'1', true, kMenuActualSize},
};

bool IsHostsOwn(HWND window) {
    char name[32] = {};
    GetClassNameA(window, name, sizeof name);
    return std::strncmp(name, "Workbench", 9) == 0;
}

} // namespace

Workspace::Workspace(Host& host, PluginModule& plugin, SIZE size, CanvasPictures pictures,
                     WorkspaceFiles files)
    : host_(host),
      plugin_(plugin),
      pictures_(std::move(pictures)),
      files_(std::move(files)),
      windows_(host, plugin, size),
      document_(host, windows_.window(), DocumentPlace(size), pictures_),
      layers_(host, windows_.window(), LayersPlace(size)),
      menus_({"File", "Edit", "View", "Window", "Help"}) {
    windows_.paintMore = [this](HDC context, const RECT& client) {
        menus_.Paint(context, client, host_.theme());
    };
    windows_.handleMore = [this](UINT message, WPARAM, LPARAM lParam) {
        if (message == WM_CLOSE) {
            // Under a dialog the document isn't done with: what its action still changes would be lost.
            if (IsWindowEnabled(windows_.window())) {
                Quit();
            } else {
                MessageBeep(0);
            }
            return true;
        }
        const POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
        return message == WM_LBUTTONDOWN && menus_.Press(windows_.window(), point, host_.theme());
    };
    windows_.takeKey = [this](const MSG& message) { return TakeKey(message); };
    windows_.documentChanged = [this] { DocumentChanged(); };
    windows_.enableMore = [this](bool enable) {
        EnableWindow(document_.window(), enable);
        EnableWindow(layers_.window(), enable);
    };
    menus_.items = [this](size_t title) { return MenuItems(title); };
    menus_.picked = [this](int number) { Pick(number); };
    document_.closeAsked = [this] { Close(); };
    document_.raised = [this] {
        if (layers_.shown())
            SetWindowPos(layers_.window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        windows_.RaisePanels();
    };
    document_.canvas().selectionChanged = [this] { document_.canvas().SelectionChanged(); };
    layers_.flip = [this](size_t layer, bool Layer::*flag) { Flip(layer, flag); };
}

Workspace::~Workspace() {
    windows_.documentChanged = nullptr;
    windows_.enableMore = nullptr;
}

void Workspace::Begin() {
    layers_.Show(true);
    plugin_.Notify("AI Application Started Notifier");
    windows_.StartTimers();
}

// Menus

std::vector<PopupItem> Workspace::PluginItems(const MenuGroup& group) {
    std::vector<PopupItem> items;
    for (size_t i = 0; i < host_.menuItems().size(); ++i) {
        const MenuItem& item = *host_.menuItems()[i];
        if (item.group != &group) continue;
        if ((item.options & kMenuWantsUpdate) != 0) plugin_.UpdateMenu(item.handle);
        items.push_back(
            Item(kFirstPluginItem + static_cast<int>(i), item.text, /*enabled=*/true, item.checked));
        for (const auto& submenu : host_.menuGroups()) {
            if (submenu->parent == &item) items.back().items = PluginItems(*submenu);
        }
    }
    return items;
}

std::vector<PopupItem> Workspace::MenuItems(size_t title) {
    Document* document = host_.front();
    const bool open = document != nullptr;
    const UndoHistory* history = open ? document->history() : nullptr;
    const auto textOr = [](const std::string& text, const char* other) {
        return text.empty() ? other : text;
    };
    switch (title) {
        case kFileMenu:
            return {Item(kMenuNew, "New"),
                    Item(kMenuOpen, "Open..."),
                    Item(kMenuClose, "Close", open),
                    Separator(),
                    Item(kMenuSave, "Save", open),
                    Item(kMenuSaveSvg, "Save as SVG...", open),
                    Item(kMenuSavePdf, "Save as PDF...", open),
                    Item(kMenuSavePng, "Save as PNG...", open),
                    Separator(),
                    Item(kMenuQuit, "Quit")};
        case kEditMenu: {
            const bool undo = history && history->CanUndo(), redo = history && history->CanRedo();
            return {Item(kMenuUndo, undo ? textOr(history->undoText(), "Undo") : "Undo", undo),
                    Item(kMenuRedo, redo ? textOr(history->redoText(), "Redo") : "Redo", redo),
                    Separator(),
                    Item(kMenuSelectAll, "Select All", open),
                    Item(kMenuSelectNone, "Select Nothing", open),
                    Item(kMenuDelete, "Delete", open && !SelectedArt(*document).empty())};
        }
        case kViewMenu:
            return {Item(kMenuZoomIn, "Zoom In", open), Item(kMenuZoomOut, "Zoom Out", open),
                    Item(kMenuActualSize, "Actual Size", open), Item(kMenuWholePage, "Whole Page", open)};
        case kWindowMenu: {
            std::vector<PopupItem> items{Item(kMenuLayers, "Layers", true, layers_.shown())};
            for (const auto& group : host_.menuGroups()) {
                if (group->parent || group->name == kHelpGroup) continue;
                for (PopupItem& item : PluginItems(*group)) items.push_back(std::move(item));
            }
            return items;
        }
        default:
            for (const auto& group : host_.menuGroups()) {
                if (!group->parent && group->name == kHelpGroup) return PluginItems(*group);
            }
            return {};
    }
}

void Workspace::PickPluginItem(size_t index) {
    if (index < host_.menuItems().size()) plugin_.PickMenu(host_.menuItems()[index]->handle);
}

void Workspace::Pick(int number) {
    Document* document = host_.front();
    UndoHistory* history = document ? document->history() : nullptr;
    switch (number) {
        case kMenuNew:
            return New();
        case kMenuOpen:
            return Open();
        case kMenuSave:
            Save();
            return;
        case kMenuSaveSvg:
            return SaveAs(".svg");
        case kMenuSavePdf:
            return SaveAs(".pdf");
        case kMenuSavePng:
            return SaveAs(".png");
        case kMenuClose:
            return Close();
        case kMenuQuit:
            return Quit();
        case kMenuUndo:
            if (history) history->Undo();
            return DocumentChanged();
        case kMenuRedo:
            if (history) history->Redo();
            return DocumentChanged();
        case kMenuSelectAll:
            return SelectAll();
        case kMenuSelectNone:
            if (document) document->SelectNone();
            return document_.canvas().SelectionChanged();
        case kMenuDelete:
            return Delete();
        case kMenuZoomIn:
        case kMenuZoomOut:
            if (document) Zoom(NextZoom(document->view().zoom, number == kMenuZoomIn));
            return;
        case kMenuActualSize:
            return Zoom(1);
        case kMenuWholePage:
            return document_.canvas().ShowWholePage();
        case kMenuLayers:
            return layers_.Show(!layers_.shown());
        default:
            if (number >= kFirstPluginItem) PickPluginItem(static_cast<size_t>(number - kFirstPluginItem));
            return;
    }
}

int Workspace::CommandOf(WPARAM key) const {
    const bool control = (GetKeyState(VK_CONTROL) & 0x8000) != 0;
    for (const Shortcut& shortcut : kShortcuts) {
        if (shortcut.key == key && shortcut.control == control) return shortcut.command;
    }
    return 0;
}

bool Workspace::TakeKey(const MSG& message) {
    // What is typed into a plug-in's controls is theirs.
    if (!IsWindowEnabled(windows_.window()) || !IsHostsOwn(message.hwnd)) return false;
    if (message.message == WM_SYSKEYDOWN) {
        return (GetKeyState(VK_MENU) & 0x8000) != 0 &&
               menus_.TakeKey(windows_.window(), static_cast<int>(message.wParam), host_.theme());
    }
    if (GetCapture()) return false;
    const int command = CommandOf(message.wParam);
    if (command != 0) Pick(command);
    return command != 0;
}

// Files

bool Workspace::MayLose() {
    const Document* document = host_.front();
    if (!document || !document->history() || document->history()->saved()) return true;
    const std::string name = path_.empty() ? document->title : FileNameOf(path_);
    const int answer =
        windows_.AskToSave("There are changes of \"" + name + "\" that aren't saved.\nSave them?");
    return answer == kAlertYes ? Save() : answer == kAlertNo;
}

void Workspace::ShowDocument(std::unique_ptr<Document> document, const std::string& path,
                             std::string losses) {
    path_ = path;
    losses_ = std::move(losses);
    document_.fileName = FileNameOf(path);
    document->KeepHistory();
    host_.Open(std::move(document));
    document_.ShowFront();
}

bool Workspace::OpenFile(const std::string& path) {
    std::string error, losses;
    std::unique_ptr<Document> document;
    {
        ProgressWindow progress(windows_.window(), "Opening " + FileNameOf(path));
        progress.ShowNow();
        if (files_.open) document = files_.open(path, &losses, &error);
    }
    if (document) {
        ShowDocument(std::move(document), path, std::move(losses));
        return true;
    }
    windows_.ShowAlert(error, true);
    return false;
}

void Workspace::New() {
    if (MayLose()) ShowDocument(std::make_unique<Document>(), {}, {});
}

void Workspace::Open() {
    if (!MayLose()) return;
    if (const auto path = AskName(windows_.window(), "Open", path_)) OpenFile(*path);
}

bool Workspace::SaveTo(const std::string& path) {
    std::string error = "there is no way to save";
    if (files_.save && host_.front() && files_.save(*host_.front(), path, &error)) return true;
    windows_.ShowAlert(error, true);
    return false;
}

bool Workspace::Save() {
    Document* document = host_.front();
    if (!document) return false;
    if (path_.empty()) {
        SaveAs(".svg");
        return document->history()->saved();
    }
    if (!losses_.empty() && !windows_.AskYesNo("\"" + FileNameOf(path_) + "\" has what isn't kept here:\n" +
                                               losses_ + "\nWrite over it all the same?"))
        return false;
    if (!SaveTo(path_)) return false;
    losses_.clear();
    document->history()->MarkSaved();
    document_.ShowTitle();
    return true;
}

void Workspace::SaveAs(const char* extension) {
    Document* document = host_.front();
    if (!document) return;
    const std::string proposal = WithExtension(path_.empty() ? document->title : path_, extension);
    auto path = AskName(windows_.window(), "Save as", proposal);
    if (!path) return;
    if (!EndsWith(*path, extension)) *path += extension;
    if (!path_.empty() && *path == path_) {
        Save();
        return;
    }
    if (files_.exists && files_.exists(*path) &&
        !windows_.AskYesNo("There is a \"" + FileNameOf(*path) + "\" already.\nReplace it?"))
        return;
    if (std::strcmp(extension, ".svg") != 0) {
        SaveTo(*path);
        return;
    }
    if (!SaveTo(*path)) return;
    path_ = *path;
    losses_.clear();
    document_.fileName = FileNameOf(path_);
    document->history()->MarkSaved();
    document_.ShowTitle();
}

void Workspace::Close() {
    if (!host_.front() || !MayLose()) return;
    path_.clear();
    losses_.clear();
    document_.fileName.clear();
    host_.Close();
    document_.ShowFront();
}

void Workspace::Quit() {
    if (MayLose()) windows_.Quit();
}

// The document

void Workspace::DocumentChanged() {
    document_.Refresh();
    layers_.Refresh();
    if (documentChanged) documentChanged();
}

void Workspace::Delete() {
    Document* document = host_.front();
    if (!document) return;
    const std::vector<Art*> selected = SelectedArt(*document);
    if (selected.empty()) return;
    document->history()->Begin("Undo Delete", "Redo Delete");
    for (Art* art : selected) document->DisposeArt(art);
    DocumentChanged();
}

void Workspace::SelectAll() {
    Document* document = host_.front();
    if (!document) return;
    document->SelectNone();
    for (Art* art : SelectableArt(*document)) document->Select(*art, true);
    document_.canvas().SelectionChanged();
}

void Workspace::Zoom(double zoom) {
    document_.canvas().ZoomTo(zoom);
}

void Workspace::Flip(size_t layer, bool Layer::*flag) {
    Document* document = host_.front();
    document->history()->Begin("Undo Layer Change", "Redo Layer Change");
    Layer& changed = document->LayerAt(layer);
    changed.*flag = !(changed.*flag);
    DocumentChanged();
}

} // namespace workbench
