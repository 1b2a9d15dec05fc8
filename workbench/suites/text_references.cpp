#include "workbench/suites/text_references.h"

#include <cstring>

namespace workbench {

namespace {

template <typename Object>
bool TakeBackOne(HostState& host, HandleType type, void* object, bool silent) {
    using Traits = ObjectTraits<Object>;
    if (type != Traits::handleType) return false;
    auto& reference = *static_cast<Object*>(object);
    if (!silent) {
        host.Fault(std::string(Traits::name) + " of call " + std::to_string(reference.madeBy) +
                   " was never released");
    }
    host.TakeBack(reference);
    return true;
}

template <typename... Objects>
void TakeBackOneOf(HostState& host, HandleType type, void* object, bool silent) {
    (TakeBackOne<Objects>(host, type, object, silent) || ...);
}

} // namespace

bool SameValue(const HostColor& a, const HostColor& b) {
    if (a.kind != b.kind) return false;
    switch (a.kind) {
        case kColorGray:
            return a.u.gray.gray == b.u.gray.gray;
        case kColorFour:
            return std::memcmp(&a.u.four, &b.u.four, sizeof a.u.four) == 0;
        case kColorThree:
            return std::memcmp(&a.u.three, &b.u.three, sizeof a.u.three) == 0;
        case kColorCustom:
            return a.u.custom.color == b.u.custom.color && a.u.custom.tint == b.u.custom.tint;
        default:
            return false;
    }
}

void TakeBackReference(HostState& host, HandleType type, void* object, bool silent) {
    TakeBackOneOf<EngineTextRange, EngineTextFrame, EngineStory, EngineCharFeatures, EngineParaFeatures,
                  EngineFont, EngineKinsoku, EngineKinsokuSet, EnginePaint, EngineTextResources,
                  EngineRealArray>(host, type, object, silent);
}

FontKey KeyOfFont(HostState& host, const std::string& name, const FontEntry* entry) {
    std::unique_ptr<HostFontKey>& key = host.fontKeys[name];
    if (key) return key->handle;
    key = std::make_unique<HostFontKey>();
    key->name = name;
    for (size_t i = 0; !entry && host.fonts && i < host.fonts->Count(); ++i) {
        if (host.fonts->At(i).name == name) entry = &host.fonts->At(i);
    }
    if (entry) key->words = entry->words;
    key->handle = reinterpret_cast<FontKey>(host.handles.Add(HandleType::kFontKey, key.get()));
    return key->handle;
}

} // namespace workbench
