#include "app/record_loading.h"

#include "app/linked_pictures.h"
#include "plugin/frame/globals.h"
#include "plugin/rebuild/load_art.h"
#include "win32/beep.h"

static constexpr char kNotAllPlaced[] =
    "not all of the record could be placed: the layer is hidden or locked, or art was refused";

static bool IsRead(int32_t number, std::string* error) {
    if (globals->curRecord) return true;
    *error = "record " + std::to_string(number) +
             " can't be read: there is none of that number, or the file is damaged before it";
    return false;
}

bool LoadRecord(const std::string& group, int32_t number, const HostPoint& point, int origin,
                LinkedFileUse linkedFiles, std::string* error) {
    globals->placePoint = point;
    globals->originMode = static_cast<int16_t>(origin);
    globals->trackState = 0;
    globals->trackTarget = nullptr;
    const unsigned beeps = BeepCount();
    const HostError result = AidbLoadArt(group.c_str(), number, linkedFiles);
    if (!WasLoadedWhole(group, number, linkedFiles, beeps, error)) return false;
    if (result == kHostNoError) return true;
    *error = kNotAllPlaced;
    return false;
}

bool WasLoadedWhole(const std::string& group, int32_t number, LinkedFileUse linkedFiles, unsigned beeps,
                    std::string* error) {
    if (!IsRead(number, error)) return false;
    const auto missing = MissingPictures({group.c_str(), number, linkedFiles});
    if (!missing.empty()) {
        *error = "linked pictures of the record are missing: " + JoinedNames(missing);
        return false;
    }
    if (BeepCount() == beeps) return true;
    *error = kNotAllPlaced;
    return false;
}

bool TransferRecordTags(const std::string& group, int32_t number, ArtHandle target, std::string* error) {
    globals->placePoint = {0, 0};
    globals->originMode = kOriginLeftBottom;
    globals->trackState = 2;
    globals->trackTarget = target;
    const unsigned beeps = BeepCount();
    AidbLoadArt(group.c_str(), number, LinkedFileUse::kLook);
    globals->trackState = 0;
    globals->trackTarget = nullptr;
    if (!IsRead(number, error)) return false;
    if (BeepCount() == beeps) return true;
    *error = "the tags couldn't be handed over: the target's layer is hidden or locked, or art was refused";
    return false;
}
