#include "tests/soak/store_model.h"

#include <cstring>
#include <fstream>
#include <iterator>

#include "plugin/objects/object_layout.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/place_moves.h"
#include "plugin/store/places.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

const char* const kGroups[] = {"Alpha", "Beta", "Gamma"}; // the last gets no records but whole groups
constexpr size_t kTargetOfGroups = 2;
constexpr size_t kMostRecords = 7;          ///< in a group, so that operations stay short
constexpr char kFileName[] = "picture.png"; // the same for all, so that pooled names collide
constexpr char kLinkOfArt[] = "PlacedFile = \"picture.png\"\r";
constexpr uint32_t kObjectsWithLink = 2;

std::string BytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void MakeCurRecord(const ModelRecord& record) {
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();
    globals->curRecordNo = -1;
    uint8_t* bytes = BlockBytes(globals->curRecord);
    auto* header = reinterpret_cast<RecordHeader*>(bytes);
    std::strcpy(header->name, record.id.c_str());
    std::strcpy(header->kind, record.edition.c_str());
    header->created = 3000000000u;
    for (size_t i = 0; i < record.id.size(); ++i)
        bytes[kPreviewOffset + i * 97] = static_cast<uint8_t>(record.id[i]);
    AddNote(record.id.c_str());
    if (!record.file.empty()) AddNote(kLinkOfArt);
}

// What the record's bodies say it is; empty if they are damaged.
std::string IdOfBodies(MemoryHandle record) {
    const uint8_t* bytes = BlockBytes(record);
    std::string id;
    for (size_t i = 0; bytes[kPreviewOffset + i * 97] != 0 && i < 60; ++i)
        id.push_back(static_cast<char>(bytes[kPreviewOffset + i * 97]));
    const auto* text = reinterpret_cast<const char*>(bytes + kObjectsOffset + sizeof(AidbObjectHeader));
    return id == text ? id : "";
}

std::string FileOf(const fs::path& root, const std::string& group, size_t number) {
    const fs::path directory = root / (group + ".DAT") / std::to_string(number);
    if (fs::exists(directory / kFileName)) return BytesOf(directory / kFileName);
    const fs::path note = directory / "picture.lnk";
    if (!fs::exists(note)) return "";
    return BytesOf(root / "_%%image" / ParseLinkNote(BytesOf(note)).pooledName);
}

ModelRecord ReadRecord(const fs::path& root, const std::string& group, size_t number) {
    ModelRecord record;
    HandleOwner handle(NewRecord());
    AidbReadRecord(group.c_str(), static_cast<int32_t>(number), &handle.get(), kReadWhole, true);
    const auto* header = reinterpret_cast<const RecordHeader*>(handle.bytes());
    record.id = header->name;
    const bool whole = header->size != 0 && IdOfBodies(handle.get()) == record.id;
    record.edition = whole ? header->kind : "damaged";
    record.linked = whole && header->objectCount == kObjectsWithLink;
    record.file = FileOf(root, group, number);
    return record;
}

bool Append(ModelStore& store, const Step& step) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) return false;
    MakeCurRecord(step.record);
    if (WriteRecord(step.group.c_str(), -1) != 0) return false;
    globals->linkCount = 0;
    if (step.record.file.empty()) return true;
    const std::string path = StorePathOf(store.root().parent_path() / (step.record.id + ".png"));
    globals->linkCount = 1;
    globals->linkPaths = NewHandle(kLinkPathBytes, 1);
    globals->linkNames = NewHandle(kLinkNameBytes, 1);
    std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkPaths)), path.c_str());
    std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkNames)), kFileName);
    const bool copied = CopyLinkedFiles(step.group.c_str(), globals->curRecordNo) == 0;
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
    return copied;
}

bool Pool(const Step& step) {
    uint8_t name[kLinkNameBytes] = {sizeof kFileName - 1};
    std::memcpy(name + 1, kFileName, sizeof kFileName - 1);
    char path[kFullPathBytes];
    return ResolveLinkedFile(step.group.c_str(), step.number, name, path) == 0;
}

} // namespace

std::string TextOf(const Model& model) {
    std::string text;
    for (const auto& [group, records] : model) {
        for (const ModelRecord& record : records)
            text += group + ": " + record.id + " " + record.edition + " [" + record.file + "]\n";
    }
    return text;
}

ModelStore::ModelStore(const fs::path& root) {
    globals = globals_.get();
    globals->swapBytes = 1;
    globals->curRecordNo = -1;
    globals->nameLimit = 63;
    SetRoot(root);
}

ModelStore::~ModelStore() {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    FreeOffsets();
    globals = nullptr;
}

void ModelStore::SetRoot(const fs::path& root) {
    root_ = root;
    fs::create_directories(root);
    std::strcpy(globals->aidbfpath, StorePathOf(root).c_str());
}

Model ModelStore::Read() {
    Model model;
    for (const char* group : kGroups) {
        std::vector<ModelRecord>& records = model[group];
        const uint32_t count = CountRecords(group);
        for (uint32_t number = 0; number < count; ++number)
            records.push_back(ReadRecord(root_, group, number));
    }
    return model;
}

bool ModelStore::Recover() {
    const StoreLock lock(kStoreExclusive);
    return lock.held();
}

std::string Step::text() const {
    const char* const names[] = {"append", "rewrite", "delete", "move", "pool", "move group"};
    return std::string(names[static_cast<int>(action)]) + " " + group + " " + std::to_string(number) + " " +
           record.id + " " + newGroup;
}

Step RandomStep(const Model& model, std::mt19937_64& random, uint64_t& nextId) {
    Step step;
    const bool targetIsFree = model.at(kGroups[kTargetOfGroups]).empty();
    const size_t side = random() % (targetIsFree ? kTargetOfGroups : kTargetOfGroups + 1);
    step.group = kGroups[side];
    step.newGroup = kGroups[side == 0 ? 1 : 0];
    const std::vector<ModelRecord>& records = model.at(step.group);
    const uint64_t chance = random() % 10;
    const bool takesRecords = side != kTargetOfGroups;
    if (takesRecords && (records.size() < 2 || (chance < 3 && records.size() < kMostRecords))) {
        step.action = Action::kAppend;
        step.record.id = "r" + std::to_string(nextId++);
        step.record.edition = "first";
        if (random() % 2) step.record.file = "file of " + step.record.id;
        return step;
    }
    step.number = static_cast<int32_t>(random() % records.size());
    step.record = records[static_cast<size_t>(step.number)];
    const bool full = model.at(step.newGroup).size() >= kMostRecords;
    if (chance < 5) {
        step.action = Action::kRewrite;
        step.record.edition = "e" + std::to_string(random() % 1000);
    } else if (chance < 7 && !step.record.file.empty()) {
        step.action = Action::kPool;
    } else {
        step.action = chance < 9 && !full ? Action::kMove : Action::kDelete;
    }
    if (chance == 9 && takesRecords && targetIsFree) {
        step.action = Action::kMoveGroup;
        step.newGroup = kGroups[kTargetOfGroups];
    }
    return step;
}

bool Run(ModelStore& store, const Step& step) {
    FreeHandle(globals->rihList);
    const char* group = step.group.c_str();
    int32_t newNumber;
    switch (step.action) {
        case Action::kAppend:
            return Append(store, step);
        case Action::kRewrite:
            MakeCurRecord(step.record);
            return WriteRecord(group, step.number) == 0;
        case Action::kDelete:
            return DeleteRecordAndData(group, step.number) == 0;
        case Action::kMove:
            return MoveRecordToGroup(group, step.number, step.newGroup.c_str(), &newNumber) == 0;
        case Action::kPool:
            return Pool(step);
        case Action::kMoveGroup: // an empty group stands there, which the move wouldn't replace
            return DeleteGroupAndData(step.newGroup.c_str()) == 0 &&
                   MoveGroup(group, step.newGroup.c_str()) == 0;
    }
    return false;
}

std::vector<std::string> OutcomesOf(Step step, const Model& before) {
    Model after = before;
    std::vector<ModelRecord>& records = after[step.group];
    std::vector<std::string> outcomes;
    switch (step.action) {
        case Action::kAppend:
            records.push_back(step.record);
            outcomes.push_back(TextOf(after));
            records.back().file.clear(); // stored, and its file not yet beside it
            break;
        case Action::kRewrite:
            records[static_cast<size_t>(step.number)] = step.record;
            break;
        case Action::kMove:
            after[step.newGroup].push_back(records[static_cast<size_t>(step.number)]);
            [[fallthrough]];
        case Action::kDelete:
            records.erase(records.begin() + step.number);
            break;
        case Action::kPool:
            break;
        case Action::kMoveGroup:
            after[step.newGroup].swap(records);
            break;
    }
    outcomes.push_back(TextOf(after));
    outcomes.push_back(TextOf(before));
    return outcomes;
}
