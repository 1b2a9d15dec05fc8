/// Why the store refused something and what it left undone, in words.
#pragma once

#include <string>

/// What `globals->storeTrouble` says, as a part of a sentence behind a colon.
std::string WordsOfStoreTrouble();

/// What a change that was interrupted was about to do, from its note of intent: a sentence without its stop.
std::string WordsOfInterruptedWork();
