/// What the user is told when the store refused or failed.
///
/// Needs the host's suites.
#pragma once

#include "plugin/store/store_lock.h"

/// Tells why the last change of the store failed (`globals->storeTrouble`) and that nothing was changed, in
/// the running language.  Nothing for StoreTrouble::kNone.
void TellStoreTrouble();

/// Tells that the record of a row is no longer where it was, because someone else has changed the group.
void TellRecordIsAnother();

/// The text of TellStoreTrouble, cp932; empty for StoreTrouble::kNone.
const char* StoreTroubleText(StoreTrouble trouble, int language);
