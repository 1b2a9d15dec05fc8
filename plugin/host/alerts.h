/// Messages to the user through the host's alert boxes.
#pragma once

#include "suites/basic.h"

/// True while the host's alert suite is held.
bool CanShowAlert();

/// Show `text`, NUL-terminated in the platform's encoding, and return when the user has seen it.  Nothing
/// happens if the host can't give an alert or its text.  `basic` serves to borrow the suite for texts while
/// the acquired suites end before it, as they do after an acquire that failed half-way.
void ShowMessageAlert(const HostBasic* basic, const char* text);
void ShowErrorAlert(const HostBasic* basic, const char* text);
