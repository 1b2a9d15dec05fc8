/// What surrounds every call of a suite's operation: it is counted, checked, refused on request, its
/// handles are looked up, and it is traced.  An operation's body is left with living objects and values.
///
/// An entry of a table is `Entry<"suite", "operation", Body>::Run`.  Its C signature follows from the body's:
///
/// | parameter of the body              | parameter of the entry | refused if                              |
/// |------------------------------------|------------------------|-----------------------------------------|
/// | `Art&`, `Layer&` and their like    | the handle             | none, stale or another type of handle   |
/// | `Art*` and their like              | the handle             | stale or another type; none gives null  |
/// | `Of<PathData>` and its like        | `ArtHandle`            | also art of another kind                |
/// | `T&` of a plain type, `const T&`   | `T*`, `const T*`       | null                                    |
/// | `Name`                             | `const char*`          | null                                    |
/// | anything else                      | the same               | never: the body checks                  |
///
/// Each of these refusals is a fault.
#pragma once

#include <algorithm>
#include <concepts>
#include <initializer_list>
#include <new>
#include <string>
#include <type_traits>

#include "workbench/suites/call_text.h"
#include "workbench/suites/host_state.h"
#include "workbench/suites/suite_tables.h"

namespace workbench {

class SuiteCall {
public:
    SuiteCall(size_t suite, const char* operation);
    ~SuiteCall();

    /// Counts the call and checks that it may be made.  Then, unless this gives an error, go on.
    HostError Begin(bool canBeRefused);

    /// What the first bad argument gave.
    HostError error() const { return error_; }

    bool refused() const { return refused_; }

    /// Records a fault of the plug-in and gives `error` back.
    HostError Fault(HostError error, const std::string& what);

    /// The same, but no fault once a call was refused on request: what follows from a refusal, such as a
    /// handle that was never made, isn't held against the plug-in.
    HostError FaultUnlessRefused(HostError error, const std::string& what);

    /// A copy of `text` for the plug-in, good until the next call of the suite.
    const char* Lend(const std::string& text);

    HostState& host() { return *state_; }

    /// The front document, which is there if an argument was a handle of one of its objects; other bodies
    /// ask NeedDocument first.
    Document& document() { return *state_->document; }

    bool traced() const { return state_ && state_->trace; }

    /// What out pointers point at is told with `outputs`: a failed call leaves it as it was.
    void Trace(std::initializer_list<TracedArgument> arguments, bool outputs, const std::string& result);

    void Fail(HostError error) {
        if (!error_) error_ = error;
    }

private:
    std::string Title() const; ///< suite and operation

    HostState* state_;
    size_t suite_;
    const char* operation_;
    uint64_t number_ = 0;
    HostError error_ = kHostNoError;
    bool refused_ = false;
    std::unique_ptr<char[]> previouslyLent_; ///< may be an argument of this call, so it lives to its end
};

/// Art of one kind.
template <typename Data>
struct Of {
    Art& art;
    Data& data;
};

struct Name {
    const char* text;
};

// What a handle stands for

template <typename T>
struct ObjectTraits;

template <typename Object, typename HandleOfObject>
struct DocumentObject {
    using Handle = HandleOfObject;
    static constexpr bool inDocument = true;
    static Object* Find(HostState& host, Handle handle) { return host.document->Find(handle); }
};

template <typename Object, typename HandleOfObject, HandleType type>
struct HostObject {
    using Handle = HandleOfObject;
    static constexpr HandleType handleType = type;
    static constexpr bool inDocument = false;
    static Object* Find(HostState& host, Handle handle) {
        return static_cast<Object*>(host.handles.Find(type, reinterpret_cast<uintptr_t>(handle)));
    }
};

// clang-format off
template <> struct ObjectTraits<Art> : DocumentObject<Art, ArtHandle> { static constexpr const char* name = "art"; };
template <> struct ObjectTraits<Layer> : DocumentObject<Layer, LayerHandle> { static constexpr const char* name = "layer"; };
template <> struct ObjectTraits<Gradient> : DocumentObject<Gradient, GradientHandle> { static constexpr const char* name = "gradient"; };
template <> struct ObjectTraits<Pattern> : DocumentObject<Pattern, PatternHandle> { static constexpr const char* name = "pattern"; };
template <> struct ObjectTraits<CustomColor> : DocumentObject<CustomColor, CustomColorHandle> { static constexpr const char* name = "custom colour"; };
template <> struct ObjectTraits<ArtStyle> : DocumentObject<ArtStyle, ArtStyleHandle> { static constexpr const char* name = "art style"; };
template <> struct ObjectTraits<Swatch> : DocumentObject<Swatch, SwatchHandle> { static constexpr const char* name = "swatch"; };
template <> struct ObjectTraits<HostText> : HostObject<HostText, UnicodeStringHandle, HandleType::kText> { static constexpr const char* name = "Unicode string"; };
template <> struct ObjectTraits<HostFilePath> : HostObject<HostFilePath, FilePathHandle, HandleType::kFilePath> { static constexpr const char* name = "file path"; };
template <> struct ObjectTraits<HostPort> : HostObject<HostPort, PortHandle, HandleType::kPort> { static constexpr const char* name = "port"; };
template <> struct ObjectTraits<HostMeshVertex> : HostObject<HostMeshVertex, MeshVertexHandle, HandleType::kMeshVertex> { static constexpr const char* name = "mesh vertex"; };
template <> struct ObjectTraits<HostMeshSegment> : HostObject<HostMeshSegment, MeshSegmentHandle, HandleType::kMeshSegment> { static constexpr const char* name = "mesh segment"; };
template <> struct ObjectTraits<HostPluginGroup> : HostObject<HostPluginGroup, PluginGroupHandle, HandleType::kPluginGroup> { static constexpr const char* name = "plug-in group"; };
template <> struct ObjectTraits<MenuGroup> : HostObject<MenuGroup, MenuGroupHandle, HandleType::kMenuGroup> { static constexpr const char* name = "menu group"; };
template <> struct ObjectTraits<MenuItem> : HostObject<MenuItem, MenuItemHandle, HandleType::kMenuItem> { static constexpr const char* name = "menu item"; };
template <> struct ObjectTraits<HostFlyout> : HostObject<HostFlyout, FlyoutHandle, HandleType::kFlyout> { static constexpr const char* name = "flyout"; };
template <> struct ObjectTraits<HostPanel> : HostObject<HostPanel, PanelHandle, HandleType::kPanel> { static constexpr const char* name = "panel"; };
template <> struct ObjectTraits<HostParameterTypes> : HostObject<HostParameterTypes, ParameterTypesHandle, HandleType::kParameterTypes> { static constexpr const char* name = "parameter types"; };
template <> struct ObjectTraits<HostParameters> : HostObject<HostParameters, ParametersHandle, HandleType::kParameters> { static constexpr const char* name = "parameters"; };
template <> struct ObjectTraits<HostPlugin> {
    using Handle = PluginHandle;
    static constexpr bool inDocument = false;
    static constexpr const char* name = "plug-in";
    static HostPlugin* Find(HostState& host, Handle handle) {
        return host.plugin.handle == handle ? &host.plugin : nullptr;
    }
};
// clang-format on

template <>
struct ObjectTraits<View> {
    using Handle = ViewHandle;
    static constexpr bool inDocument = true;
    static constexpr const char* name = "view";
    static View* Find(HostState& host, Handle handle) {
        return host.document->view().handle == handle ? &host.document->view() : nullptr;
    }
};

template <typename T>
concept HostKnown = requires {
    typename ObjectTraits<T>::Handle;
};

/// The living object, or null after telling the call.
template <typename Object>
Object* LookUp(SuiteCall& call, typename ObjectTraits<Object>::Handle handle, bool noneIsGood) {
    using Traits = ObjectTraits<Object>;
    if (call.error() || (!handle && noneIsGood)) return nullptr;
    if (Traits::inDocument && !call.host().document) {
        if (handle) call.Fault(kHostNotFound, BadHandleText(Traits::name, handle));
        call.Fail(kHostNotFound);
        return nullptr;
    }
    if (!handle) {
        call.Fail(call.FaultUnlessRefused(kHostBadHandle, std::string("no ") + Traits::name));
        return nullptr;
    }
    Object* object = Traits::Find(call.host(), handle);
    if (!object) call.Fail(call.Fault(kHostBadHandle, BadHandleText(Traits::name, handle)));
    return object;
}

// How one parameter of a body comes from the entry's

template <typename Parameter>
struct Argument { // a value as it is
    using Raw = Parameter;
    using Held = Parameter;
    static Held Hold(SuiteCall&, Raw raw) { return raw; }
    static Parameter Pass(const Held& held) { return held; }
};

template <typename T>
struct Argument<T&> { // where a plain value comes from or goes to
    using Raw = T*;
    using Held = T*;
    static Held Hold(SuiteCall& call, Raw raw) {
        if (!raw && !call.error()) call.Fail(call.Fault(kHostBadParameter, "a pointer is missing"));
        return raw;
    }
    static T& Pass(Held held) { return *held; }
};

template <HostKnown T>
struct Argument<T&> {
    using Raw = typename ObjectTraits<T>::Handle;
    using Held = T*;
    static Held Hold(SuiteCall& call, Raw raw) { return LookUp<T>(call, raw, false); }
    static T& Pass(Held held) { return *held; }
};

template <HostKnown T>
struct Argument<T*> {
    using Raw = typename ObjectTraits<T>::Handle;
    using Held = T*;
    static Held Hold(SuiteCall& call, Raw raw) { return LookUp<T>(call, raw, true); }
    static T* Pass(Held held) { return held; }
};

template <typename Data>
struct Argument<Of<Data>> {
    using Raw = ArtHandle;
    using Held = Art*;
    static Held Hold(SuiteCall& call, Raw raw) {
        Art* art = LookUp<Art>(call, raw, false);
        if (art && !std::holds_alternative<Data>(art->data)) {
            call.Fail(call.Fault(kHostBadArt, "art of kind " + std::to_string(art->kind)));
        }
        return art;
    }
    static Of<Data> Pass(Held held) { return {*held, std::get<Data>(held->data)}; }
};

template <>
struct Argument<Name> {
    using Raw = const char*;
    using Held = const char*;
    static Held Hold(SuiteCall& call, Raw raw) {
        if (!raw && !call.error()) call.Fail(call.Fault(kHostBadParameter, "a name is missing"));
        return raw;
    }
    static Name Pass(Held held) { return {held}; }
};

// The entries

template <size_t size>
struct FixedText {
    char text[size];
    consteval FixedText(const char (&from)[size]) { std::copy_n(from, size, text); }
};

enum class EntryKind {
    kOrdinary,
    kPlain,   ///< no error result: counts, and can't be refused
    kDisposal ///< done even when refused, so that a refusal makes no leak and no change that can't be undone
};

template <FixedText suite, FixedText operation, auto body, EntryKind kind = EntryKind::kOrdinary>
struct Entry;

template <FixedText suite, FixedText operation, EntryKind kind, typename Result, typename... Parameters,
          Result (*body)(SuiteCall&, Parameters...)>
struct Entry<suite, operation, body, kind> {
    static Result Run(typename Argument<Parameters>::Raw... raw) noexcept {
        static const size_t number = SuiteNumber(suite.text);
        SuiteCall call(number, operation.text);
        if constexpr (std::is_void_v<Result>) {
            if (!call.Begin(false)) Perform(call, raw...);
            if (call.traced()) call.Trace({TracedArgument::Of(raw)...}, true, "");
        } else if constexpr (kind == EntryKind::kPlain) {
            Result result{};
            if (!call.Begin(false)) result = Perform(call, raw...);
            if (call.traced()) call.Trace({TracedArgument::Of(raw)...}, true, std::to_string(result));
            return result;
        } else {
            HostError error = call.Begin(true);
            if (!error || (kind == EntryKind::kDisposal && call.refused())) {
                const HostError done = Perform(call, raw...);
                if (!error) error = done;
            }
            if (call.traced())
                call.Trace({TracedArgument::Of(raw)...}, error == kHostNoError, ErrorText(error));
            return error;
        }
    }

private:
    using Outcome = std::conditional_t<std::is_void_v<Result>, HostError, Result>; ///< something to hold

    /// The body's call, as a constructor because the braces of one fix the order in which arguments are
    /// looked up: the first bad one decides.
    struct Performed {
        Performed(SuiteCall& call, typename Argument<Parameters>::Held... held) {
            if (call.error()) {
                if constexpr (kind != EntryKind::kPlain) outcome = static_cast<Outcome>(call.error());
            } else if constexpr (std::is_void_v<Result>) {
                body(call, Argument<Parameters>::Pass(held)...);
            } else {
                outcome = body(call, Argument<Parameters>::Pass(held)...);
            }
        }
        Outcome outcome{};
    };

    static Outcome Perform(SuiteCall& call, typename Argument<Parameters>::Raw... raw) try {
        return Performed{call, Argument<Parameters>::Hold(call, raw)...}.outcome;
    } catch (const std::bad_alloc&) {
        return kind == EntryKind::kPlain ? Outcome{} : static_cast<Outcome>(kHostOutOfMemory);
    }
};

/// kHostNotFound, and no fault, if no document is open.
inline HostError NeedDocument(SuiteCall& call) {
    return call.host().document ? kHostNoError : kHostNotFound;
}

} // namespace workbench
