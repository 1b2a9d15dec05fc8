#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iostream>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/open_database.h"
#include "app/store_words.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_lock.h"

namespace {

/// What the user was asked about.
struct Doomed {
    int32_t number;
    RecordHeader header;
};

std::string Line(const std::string& group, const Doomed& record) {
    return GroupForPeople(group) + "\t" + std::to_string(record.number) + "\t" +
           FieldText(record.header.name, sizeof record.header.name);
}

/// The records from the highest number down, each once; false, with a complaint, if one can't be read.
bool Collect(const std::string& group, std::vector<int> numbers, std::vector<Doomed>* records) {
    std::sort(numbers.begin(), numbers.end(), std::greater<>());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    for (const int number : numbers) {
        Doomed record{number, {}};
        if (!ReadHeader(group, number, &record.header)) {
            Complain(GroupForPeople(group) + ": there is no record " + std::to_string(number));
            return false;
        }
        records->push_back(record);
    }
    return true;
}

bool Confirm(const std::string& group, const std::vector<Doomed>& records) {
    for (const Doomed& record : records) std::cerr << Line(group, record) << "\n";
    std::cerr << (records.size() == 1 ? "Delete this record with the pictures that belong to it? [y/N] "
                                      : "Delete these records with the pictures that belong to them? [y/N] ")
              << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

int Delete(const std::string& group, const std::vector<Doomed>& records) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) {
        Complain(GroupForPeople(group) + ": " + WordsOfStoreTrouble());
        return kRefusedOrDiffers;
    }
    for (const Doomed& record : records) {
        // Others may have deleted or added while the user was asked.
        RecordHeader header;
        if (!ReadHeader(group, record.number, &header) ||
            std::memcmp(&header, &record.header, sizeof header) != 0) {
            Complain(Line(group, record) + ": the group has changed meanwhile; it was not deleted");
            return kRefusedOrDiffers;
        }
        if (DeleteRecordAndData(group.c_str(), record.number) != 0) {
            Complain(Line(group, record) + ": " + WordsOfStoreTrouble());
            return globals->storeTrouble == StoreTrouble::kDisk ? kFileTrouble : kRefusedOrDiffers;
        }
        std::cout << Line(group, record) << "\n";
    }
    return kDone;
}

} // namespace

int RunDelete(const DeleteOptions& options) {
    OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    std::vector<Doomed> records;
    if (!Collect(database.group(), options.numbers, &records)) return kRefusedOrDiffers;
    if (!options.yes) {
        if (!isatty(STDIN_FILENO)) {
            Complain("nothing was deleted: there is nobody to ask; --yes deletes without asking");
            return kRefusedOrDiffers;
        }
        if (!Confirm(database.group(), records)) {
            Complain("nothing was deleted");
            return kRefusedOrDiffers;
        }
    }
    return database.Ended(Delete(database.group(), records));
}
