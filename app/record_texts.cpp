#include "app/record_texts.h"

#include "app/commands.h"
#include "app/texts.h"

std::optional<std::string> StoredText(const std::string& what, const std::string& utf8, size_t capacity) {
    std::string error;
    auto text = Cp932OfUtf8(utf8, &error);
    if (!text) {
        Complain(what + ": " + error);
    } else if (text->size() > capacity - 1) {
        Complain(what + " is longer than " + std::to_string(capacity - 1) + " bytes");
        text.reset();
    }
    return text;
}
