/// Why the store refused something, in words.
#pragma once

#include <string>

/// What `globals->storeTrouble` says, as a part of a sentence behind a colon.
std::string WordsOfStoreTrouble();
