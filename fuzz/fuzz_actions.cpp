// What a person writes for the program to do: files of actions and files of hands.  Any text is taken whole
// or refused with a sentence, and what was taken reads back the same from what is written of it.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/action_file.h"
#include "app/hands_file.h"
#include "plugin/frame/globals.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void TryActions(std::string_view text) {
    std::string error;
    const auto steps = ParseActions(text, &error);
    Require(steps.has_value() == error.empty());
    if (!steps) return;
    const std::string written = TextOfActions(*steps);
    const auto again = ParseActions(written, &error);
    Require(again.has_value() && again->size() == steps->size() && TextOfActions(*again) == written);
}

void TryHands(std::string_view text) {
    std::string error;
    Require(ParseHands(text, &error).has_value() == error.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!globals) {
        globals = new Globals();
        globals->nameLimit = 63;
    }
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    TryActions(text);
    TryHands(text);
    return 0;
}
