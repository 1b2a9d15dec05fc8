#include "app/store_words.h"

#include "app/database_view.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/intent_note.h"
#include "plugin/store/store_lock.h"

std::string WordsOfStoreTrouble() {
    switch (globals->storeTrouble) {
        case StoreTrouble::kBusy:
            return "another program is changing the database; try again";
        case StoreTrouble::kUnfinished:
            return "an interrupted change must be finished first, and can't be now; 'velquorne repair' tells "
                   "which";
        case StoreTrouble::kDamaged:
            return "the group is damaged; 'velquorne repair' mends what can be mended";
        case StoreTrouble::kRefused:
            return "there is no record of that number, or the group would grow too large";
        case StoreTrouble::kDisk:
            return "a file can't be opened, read or written";
        case StoreTrouble::kMemory:
            return "memory ran out";
        case StoreTrouble::kNone:
            break;
    }
    return "nothing was changed";
}

std::string WordsOfInterruptedWork() {
    Intent intent;
    if (!ReadIntent(intent)) return "a change was interrupted, and the note that tells which can't be read";
    const std::string record =
        "record " + std::to_string(intent.number) + " of " + GroupForPeople(intent.group);
    switch (intent.kind) {
        case IntentKind::kDelete:
            return "deleting " + record + " was interrupted";
        case IntentKind::kMove:
            return "moving " + record + " to " + GroupForPeople(intent.newGroup) + " was interrupted";
        case IntentKind::kRenumber:
            return "renumbering the folders in " + Utf8OfCp932(intent.directory) + " was interrupted";
        case IntentKind::kMoveGroup:
            return "moving the group " + GroupForPeople(intent.group) + " to " +
                   GroupForPeople(intent.newGroup) + " was interrupted";
        case IntentKind::kPool:
            break;
    }
    return "moving the picture '" + Utf8OfCp932(intent.storedName) + "' of " + record +
           " into the image folder was interrupted";
}
