#include "plugin/frame/start_up.h"

#include "plugin/frame/globals.h"
#include "plugin/frame/preferences.h"
#include "plugin/placement/geometry.h"

namespace {

constexpr char kStartedNotifier[] = "AI Application Started Notifier";

} // namespace

HostError StartUp(const HostMessage* message) {
    SetDefaults(message->self);
    FillCurveTables();
    ReadPreferences();
    return kHostNoError;
}

void ShutDown() {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    WritePreferences();
    FreeHandle(globals->sideObjects);
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
    FreeHandle(globals->pendingTags);
    FreeOffsets();
}

HostError OnTimer(HostMessage* message) {
    globals->hostBasic = message->basic;
    return kHostNoError;
}

HostError OnNotify(HostMessage* message) {
    // A notifier's message continues behind the head.
    const auto* notifier = reinterpret_cast<const HostNotifierMessage*>(message);
    if (moduleBasic->TextsEqual(notifier->type, kStartedNotifier)) globals->hostBasic = message->basic;
    return kHostNoError;
}
