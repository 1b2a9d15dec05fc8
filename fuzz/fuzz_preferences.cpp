// The preferences file: any bytes are taken.  What was taken and written is taken again as the same, as far
// as a line holds it, and each text stays in its field.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/frame/preferences.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto block = std::make_unique<Globals>();
    globals = block.get();
    SetDefaults(nullptr);
    // A copy of exactly these bytes, so that a read behind them shows.
    const std::unique_ptr<char[]> copy(new char[size]);
    if (size != 0) std::memcpy(copy.get(), data, size);
    TakePreferences({copy.get(), size});
    Require(strnlen(globals->product, sizeof globals->product) < sizeof globals->product);
    for (const auto& root : globals->aidbfpathEx) Require(strnlen(root, kNameBytes) < kNameBytes);
    Require(globals->language >= 0 && globals->language <= 2);
    // Reals keep six digits and lines 256 bytes, so the second text may differ from the first, but no later
    // one from the second.
    TakePreferences(PreferencesText());
    const std::string second = PreferencesText();
    TakePreferences(second);
    Require(PreferencesText() == second);
    return 0;
}
