#include "app/linked_pictures.h"

#include <algorithm>
#include <array>

#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/placed_rebuild.h"
#include "plugin/store/store_names.h"

std::vector<std::string> MissingPictures(const RecordSource& source) {
    const RecordSource look = {source.groupPath, source.number, LinkedFileUse::kLook};
    std::vector<std::string> missing;
    ObjectWalk walk(globals->curRecord);
    for (auto object = walk.Next(); !object.empty(); object = walk.Next()) {
        if (HeaderOf(object)->type != kNoteObject) continue;
        const std::string_view text = NoteText(object);
        if (!text.starts_with("PlacedFile")) continue;
        const std::string name = ParsePlacedNote(text).storedName;
        std::array<char, kFullPathBytes> path{};
        if (name.empty()) continue;
        if (FindPlacedFile(look, name, path.data()) == 0 && PlacedFileExists(path.data())) continue;
        std::string readable = Utf8OfCp932(name);
        if (std::ranges::find(missing, readable) == missing.end()) missing.push_back(std::move(readable));
    }
    return missing;
}

std::string JoinedNames(const std::vector<std::string>& names) {
    std::string line;
    for (const std::string& name : names) line += (line.empty() ? "" : ", ") + name;
    return line;
}
