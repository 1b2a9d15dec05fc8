/// Messages to the user through the host's alert boxes.
#pragma once

#include "suites/basic.h"
#include "suites/host_types.h"

/// True while the host's alert suite is held.
bool CanShowAlert();

/// Show `text`, NUL-terminated in `encoding`, and return when the user has seen it.  Nothing happens if the
/// host can't give an alert or its text.  `basic` serves to borrow the suite for texts while
/// the acquired suites end before it, as they do after an acquire that failed half-way.
void ShowMessageAlert(const HostBasic* basic, const char* text, int32_t encoding = kEncodingPlatform);
void ShowErrorAlert(const HostBasic* basic, const char* text, int32_t encoding = kEncodingPlatform);

/// Asks, and returns whether the user said yes; false if nobody could be asked.  Needs all suites.
bool AskYesNoAlert(const char* question, int32_t encoding);
