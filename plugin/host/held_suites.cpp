#include "plugin/host/held_suites.h"

#include "plugin/frame/globals.h"
#include "plugin/host/suite_table.h"

HeldSuites::HeldSuites() {
    if (!globals || !globals->hostBasic) return;
    counted_ = true;
    held_ = AcquireHostSuites(globals->hostBasic) == kHostNoError;
}

HeldSuites::~HeldSuites() {
    if (counted_) ReleaseHostSuites(globals->hostBasic);
}
