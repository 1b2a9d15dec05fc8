/// The whole of the host's windows: menu bar, document, layers, panels, and what their commands do.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workbench/frame/document_window.h"
#include "workbench/frame/host_windows.h"
#include "workbench/frame/layer_list.h"
#include "workbench/frame/menu_bar.h"

namespace workbench {

/// Files, as whoever runs the workspace can read and write them.  Paths and sentences are UTF-8.
struct WorkspaceFiles {
    /// Null, and a sentence in *error, if there is no document in the file.  *losses becomes what the file
    /// has and the document hasn't; empty: nothing.
    std::function<std::unique_ptr<Document>(const std::string& path, std::string* losses, std::string* error)>
        open;
    /// By the extension.
    std::function<bool(const Document& document, const std::string& path, std::string* error)> save;
    std::function<bool(const std::string& path)> exists;
};

/// Numbers of the menus' items.  A plug-in's items follow from kFirstPluginItem on, in their order in the
/// host.
enum MenuNumber : int {
    kMenuNew = 1,
    kMenuOpen,
    kMenuSave,
    kMenuSaveSvg,
    kMenuSavePdf,
    kMenuSavePng,
    kMenuClose,
    kMenuQuit,
    kMenuUndo,
    kMenuRedo,
    kMenuSelectAll,
    kMenuSelectNone,
    kMenuDelete,
    kMenuZoomIn,
    kMenuZoomOut,
    kMenuActualSize,
    kMenuWholePage,
    kMenuLayers,
    kFirstPluginItem = 1000
};

/// Titles of the menu bar, by number.
enum MenuTitle : size_t { kFileMenu, kEditMenu, kViewMenu, kWindowMenu, kHelpMenu, kMenuCount };

class Workspace {
public:
    /// The host's theme must stand already.  Everything given must live longer.
    Workspace(Host& host, PluginModule& plugin, SIZE size, CanvasPictures pictures, WorkspaceFiles files);
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Tells the plug-in that the host's windows stand, and starts the timers.
    void Begin();

    /// A document in front of the one that was there, whose changes are gone.  `path` may be empty.
    void ShowDocument(std::unique_ptr<Document> document, const std::string& path, std::string losses);
    bool OpenFile(const std::string& path); ///< else an alert says why

    std::vector<PopupItem> MenuItems(size_t title); ///< as they would show now; tells the plug-in before
    void Pick(int number);

    std::function<void()> documentChanged; ///< another document, or its art or layers may have changed

    HostWindows& windows() { return windows_; }
    DocumentWindow& document() { return document_; }
    LayerList& layers() { return layers_; }
    MenuBar& menus() { return menus_; }

private:
    bool TakeKey(const MSG& message);
    int CommandOf(WPARAM key) const;
    void PickPluginItem(size_t index);
    std::vector<PopupItem> PluginItems(const MenuGroup& group);
    bool MayLose(); ///< no changes would be lost, or the user wants it so
    void New();
    void Open();
    bool Save();
    void SaveAs(const char* extension);
    bool SaveTo(const std::string& path);
    void Close();
    void Quit();
    void Delete();
    void SelectAll();
    void Zoom(double zoom);
    void Flip(size_t layer, bool Layer::*flag);
    void DocumentChanged();

    Host& host_;
    PluginModule& plugin_;
    CanvasPictures pictures_;
    WorkspaceFiles files_;
    HostWindows windows_;
    DocumentWindow document_;
    LayerList layers_;
    MenuBar menus_;
    std::string path_;   ///< of the front document; empty: it has no file yet
    std::string losses_; ///< what the file has and the document hasn't
};

} // namespace workbench
