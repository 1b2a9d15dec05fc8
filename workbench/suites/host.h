/// The stand-in host as a plug-in meets it: the basic interface, the suites' tables, the front document.
///
/// The host is strict.  What a real host would forgive now and crash on later is recorded as a fault: stale
/// handles, handles of another kind, art of a kind that an operation doesn't take, missing out pointers,
/// art made where none may be, suites used while they aren't acquired, uses never given back, host strings,
/// paths and ports never disposed of, references never released, blocks freed twice.  A call that fails for a
/// good reason is no fault: no such name, no document, a locked layer, a value out of range (stored data
/// brings those), a refusal on request and, once there was one, a missing handle or an index that follows
/// from it.
///
/// The suites' tables are plain functions, so there is one current host for each process, used by one
/// thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "suites/basic.h"
#include "workbench/document/document.h"
#include "workbench/document/fonts.h"
#include "workbench/document/painter.h"
#include "workbench/document/pictures.h"
#include "workbench/suites/frame_objects.h"

namespace workbench {

struct HostState;

/// What the user was shown.
struct Alert {
    bool error = false; ///< else a message
    std::string text;   ///< UTF-8
    bool question = false;
};

/// The one plug-in, as the host calls it and as suites name it.
struct HostPlugin {
    PluginHandle handle = nullptr; ///< any other is a fault
    void* instance = nullptr;      ///< the platform's handle of its module
    std::function<HostError(int32_t typeWord, ParametersHandle parameters)> doAction;
};

/// @param reals  the parameters that it is played with
/// @param done  it has run
using ActionWatch =
    std::function<void(const HostAction& action, const std::map<uint32_t, double>& reals, bool done)>;

class Host {
public:
    Host();  ///< becomes the current host; there must be none
    ~Host(); ///< frees what the plug-in left, without a word: see CheckBalance
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    static Host* Current(); ///< null if there is none

    /// What goes into a message's `basic`; the same pointer for the host's whole life.
    const HostBasic* basic() const;

    // The front document.  Handles of the old one are stale afterwards.
    void Open(std::unique_ptr<Document> document);
    std::unique_ptr<Document> Close(); ///< null if none was open
    Document* front();                 ///< null if none is open

    /// Draws for AI Draw Art Suite; not owned.  Without one, ports can be filled and read, and drawing is
    /// refused.
    void SetPainter(Painter* painter);

    /// Tells place requests about files; not owned.  Without one every request is refused.
    void SetPictureFiles(PictureFiles* pictures);

    /// The fonts of AI Font Suite; not owned.  Without one there are none.  Keys of the old list are stale.
    void SetFontList(FontList* fonts);

    /// Another plug-in's kind of plug-in art, as AI Plugin Group Suite lists it.
    void AddPluginGroup(std::string name);

    // The frame.
    /// Shows panels and alerts; not owned.  Without one there are no windows: panels are refused, alerts are
    /// only noted, and questions get the next of the answers, or no.
    void SetFrame(WindowFrame* frame);
    WindowFrame* frame() const;
    void SetPlugin(HostPlugin plugin);
    void SetTheme(const Theme& theme);
    const Theme& theme() const;
    void SetRulerUnit(RulerUnit unit);
    void AnswerNext(bool yes);

    // What the plug-in has hung into the frame.
    const std::vector<std::unique_ptr<MenuGroup>>& menuGroups() const;
    const std::vector<std::unique_ptr<MenuItem>>& menuItems() const;
    const std::vector<std::unique_ptr<HostTimer>>& timers() const;
    const std::vector<std::unique_ptr<HostPanel>>& panels() const;
    const std::vector<HostAction>& actions() const;
    bool HasNotifier(const std::string& type) const;
    /// As a person or a script plays a recorded one; kHostNotFound for none of that name.
    HostError PlayAction(const std::string& name, const std::map<uint32_t, double>& reals);
    HostError PlayAction(const std::string& name, ParametersHandle parameters);
    /// Sees every action just before it runs and when it has, whoever played it; an empty function ends that.
    void WatchActions(ActionWatch watch);
    /// Another plug-in's menu group, as if it had made it.
    void AddMenuGroup(const std::string& name);
    /// The plug-in is down: its menus, timers, notifiers and actions go.  A panel or flyout that it left is a
    /// fault.
    void DropPluginObjects();
    /// The plug-in's code goes, not the plug-in: its panels stay and have no handlers.
    void ForgetHandlers();
    void Fault(const std::string& line); ///< what others have found the plug-in to do wrong

    const std::vector<Alert>& alerts() const;
    void ClearAlerts();

    // Strictness.
    /// Lines such as "call 12: AI Art Suite GetArtKind: stale handle 0x10040 (art)".  Beyond 1,000 they are
    /// only counted.
    const std::vector<std::string>& faults() const;
    uint64_t faultCount() const;
    void ClearFaults();

    /// Uses of one suite, or of all suites together, that have not been given back.
    int64_t UsesOf(const char* suite) const;
    int64_t Uses() const;

    /// Records a fault for every suite use not given back and every string, path and port not disposed of.
    /// The host itself does the latter whenever the last suite use is given back.  `shutDown`: no block
    /// may be left either, as after the plug-in's shut-down.
    void CheckBalance(bool shutDown = false);
    size_t BlockCount() const; ///< blocks of the basic interface not freed

    /// The length of one message to the plug-in: records a fault if the uses of any suite differ between
    /// its beginning and its end.  Messages may nest.
    class Message {
    public:
        Message();
        ~Message();
        Message(const Message&) = delete;
        Message& operator=(const Message&) = delete;

    private:
        std::vector<int64_t> uses_;
    };

    // Refusing on request.  Calls are calls of suites' operations, numbered from 1; a refused one does
    // nothing and gives kHostRefused.  Operations without an error result count but can't be refused; the
    // disposal of a string, path or port, and the beginning of an undo step, is done all the same and then
    // reported as refused.
    uint64_t callCount() const;
    void RefuseCall(uint64_t n); ///< the n-th from now on, 1 being the next; once
    void RefuseFrom(uint64_t n); ///< the n-th from now on and all behind it
    void RefuseNone();
    bool refused() const; ///< a call was refused since the last of these three

    /// From now on acquiring that suite fails with kHostSuiteNotFound; an empty name ends that.
    void FailAcquire(std::string suite);

    /// From now on AllocateBlock fails with kHostOutOfMemory.
    void FailAllocations(bool fail);

    /// Each suite call as one line: suite, operation, arguments, result.  An empty function ends it.
    void SetTrace(std::function<void(const std::string&)> trace);

private:
    std::unique_ptr<HostState> state_;
};

/// The suites that the host supplies.
struct SuiteEntry {
    const char* name;
    uint32_t version;
};
const std::vector<SuiteEntry>& SuppliedSuites();

} // namespace workbench
