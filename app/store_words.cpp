#include "app/store_words.h"

#include "plugin/frame/globals.h"
#include "plugin/store/store_lock.h"

std::string WordsOfStoreTrouble() {
    switch (globals->storeTrouble) {
        case StoreTrouble::kBusy:
            return "another program is changing the database; try again";
        case StoreTrouble::kUnfinished:
            return "an interrupted change can't be finished now; 'velquorne check' tells which";
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
