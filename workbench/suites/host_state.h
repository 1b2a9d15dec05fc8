/// What the host knows; for this room alone.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "suites/mesh.h"
#include "suites/text.h"
#include "workbench/document/handle_table.h"
#include "workbench/suites/frame_objects.h"
#include "workbench/suites/host.h"

namespace workbench {

struct HostText {
    UnicodeStringHandle handle = nullptr;
    std::string utf8;
    uint64_t madeBy = 0; ///< number of the call
};

struct HostFilePath {
    FilePathHandle handle = nullptr;
    std::string utf8;
    uint64_t madeBy = 0;
};

struct HostPort {
    PortHandle handle = nullptr;
    int32_t width = 0, height = 0;
    std::unique_ptr<PaintSurface> surface;
    bool canDraw = false; ///< a painter made the surface
    uint64_t madeBy = 0;
};

struct HostPluginGroup {
    PluginGroupHandle handle = nullptr;
    std::string name;
};

/// The vertex that a plug-in holds at the moment; out of reach once its mesh is gone.
struct HostMeshVertex {
    MeshVertexHandle handle = nullptr;
    ArtHandle mesh = nullptr;
    size_t vertex = 0;
};

/// Likewise the segment.
struct HostMeshSegment {
    MeshSegmentHandle handle = nullptr;
    ArtHandle mesh = nullptr;
    size_t vertex = 0;
    MeshDirection direction = kForwardI;
};

struct HostFontKey {
    FontKey handle = nullptr;
    std::string name;
    std::array<int32_t, 16> words{}; ///< all 0 for a font that this machine doesn't have
};

struct HostState {
    HostState();
    ~HostState();

    std::unique_ptr<Document> document;
    Painter* painter = nullptr;
    PictureFiles* pictures = nullptr;
    FontList* fonts = nullptr;
    std::map<std::string, std::unique_ptr<HostFontKey>> fontKeys; ///< given out so far, by name
    HandleTable handles;                                          ///< texts, paths, ports, plug-in groups
    size_t loaned = 0; ///< texts, paths and ports that the plug-in has to dispose of
    std::vector<std::unique_ptr<HostPluginGroup>> pluginGroups;
    std::unique_ptr<HostMeshVertex> meshVertex;   ///< null: none given out, or taken back
    std::unique_ptr<HostMeshSegment> meshSegment; ///< likewise
    std::vector<Alert> alerts;
    std::deque<bool> answers; ///< to the next questions, where no frame asks a person

    WindowFrame* frame = nullptr;
    Theme theme;
    RulerUnit rulerUnit = RulerUnit::kMillimetre;
    HostPlugin plugin;
    int32_t pluginOptions = 0;
    std::vector<std::unique_ptr<MenuGroup>> menuGroups;
    std::vector<std::unique_ptr<MenuItem>> menuItems;
    std::vector<std::unique_ptr<HostTimer>> timers;
    std::vector<std::unique_ptr<HostNotifier>> notifiers;
    std::vector<std::unique_ptr<HostFlyout>> flyouts;
    std::vector<std::unique_ptr<HostPanel>> panels;
    std::vector<HostAction> actions;
    ActionWatch watchActions;

    std::vector<int64_t> uses; ///< by suite number
    int64_t allUses = 0;
    std::unordered_set<void*> blocks;

    std::vector<std::string> faults;
    uint64_t faultCount = 0;

    uint64_t calls = 0;
    uint64_t refuseFirst = 0, refuseLast = 0; ///< numbers of calls; none while the first is 0
    bool refused = false;
    std::string failingSuite;
    bool failAllocations = false;

    std::function<void(const std::string&)> trace;
    std::vector<std::unique_ptr<char[]>> lentTexts; ///< by suite number: valid until the suite's next call

    void Fault(std::string line);

    /// A new object that the host keeps, with its handle.
    template <typename Object>
    Object& Keep(HandleType type, std::vector<std::unique_ptr<Object>>& list) {
        auto object = std::make_unique<Object>();
        object->handle = reinterpret_cast<decltype(object->handle)>(handles.Add(type, object.get()));
        list.push_back(std::move(object));
        return *list.back();
    }
    template <typename Object>
    void Drop(Object& object, std::vector<std::unique_ptr<Object>>& list) {
        handles.Remove(reinterpret_cast<uintptr_t>(object.handle));
        std::erase_if(list, [&](const auto& each) { return each.get() == &object; });
    }
    /// A group of the menu bar or below an item; made if it isn't there.
    MenuGroup& GroupOf(const std::string& name);

    /// Makes or ends an object that the plug-in has to dispose of.
    template <typename Handle, typename Object>
    Handle Lend(HandleType type, std::unique_ptr<Object> object) {
        object->madeBy = calls;
        object->handle = reinterpret_cast<Handle>(handles.Add(type, object.get()));
        ++loaned;
        return object.release()->handle;
    }
    template <typename Object>
    void TakeBack(Object& object) {
        handles.Remove(reinterpret_cast<uintptr_t>(object.handle));
        --loaned;
        delete &object;
    }

    /// Frees what was never disposed of; with a fault for each unless `silent`.
    void TakeBackAll(bool silent);
};

/// The part of TakeBackAll for the text engine's references; other types are passed over.
void TakeBackReference(HostState& host, HandleType type, void* object, bool silent);

/// The current host's state; null if there is no host.
HostState* CurrentState();

} // namespace workbench
