#include "app/import_worker.h"

#include <cstring>

#include "app/database_view.h"
#include "app/documents.h"
#include "app/import_journal.h"
#include "app/registration.h"
#include "app/session.h"
#include "app/texts.h"
#include "plugin/store/record.h"

namespace {

std::string FittingText(const std::string& utf8, size_t capacity, const char* field,
                        std::map<std::string, int>* losses) {
    size_t replaced = 0;
    std::string text = Cp932OfUtf8OrMark(utf8, &replaced);
    if (replaced) (*losses)[std::string("character of the ") + field] += static_cast<int>(replaced);
    if (text.size() > capacity - 1) {
        ++(*losses)[std::string("end of the ") + field];
        text = CutCp932(text, capacity - 1);
    }
    return text;
}

RecordTexts TextsOf(const workbench::Document& document, std::map<std::string, int>* losses) {
    return {FittingText(document.title, kRecordNameBytes, "name", losses),
            FittingText(document.subject, kRecordNameBytes, "kind", losses),
            FittingText(document.description, kRecordCommentBytes, "comment", losses)};
}

/// True if the record behind the last one in the journal is this file's: the program was stopped between
/// the two.
bool StoredWithoutLine(Session& session, const std::string& group, const ImportJournal& journal,
                       const std::string& name) {
    const SuitesHeld held(session.host());
    const int32_t next = journal.lastNumber() + 1;
    if (CountRecords(group.c_str()) != static_cast<uint32_t>(next) + 1) return false;
    HandleOwner record;
    AidbReadRecord(group.c_str(), next, &record.get(), kReadHeader, true);
    if (!record.bytes()) return false;
    RecordHeader header;
    std::memcpy(&header, record.bytes(), sizeof header);
    return header.size != 0 && name == std::string(header.name, strnlen(header.name, sizeof header.name));
}

class GroupImport {
public:
    GroupImport(Session& session, const ImportShare& share, const std::string& group)
        : session_(session), share_(share), group_(group), journal_(share.database, share.source, group) {}

    bool ok() const { return journal_.ok(); }

    ImportOutcome Store(const std::string& file) {
        ImportOutcome outcome;
        outcome.file = file;
        if (journal_.Has(file)) {
            outcome.skipped = true;
            return outcome;
        }
        int32_t number = -1;
        StoreNew(file, &outcome, &number);
        if (!journal_.Add(file, number)) outcome.refused = "the import's own notes can't be written";
        first_ = false;
        return outcome;
    }

private:
    void StoreNew(const std::string& file, ImportOutcome* outcome, int32_t* number) {
        workbench::ReadReport report;
        auto document = OpenDocument(share_.source + "/" + file, &report, &outcome->refused, share_.source);
        if (!document) return;
        LeaveOutMissingPictures(*document);
        document->SelectAll();
        const RecordTexts texts = TextsOf(*document, &report.losses);
        outcome->lost = LossesLine(report);
        if (first_ && StoredWithoutLine(session_, group_, journal_, texts.name)) {
            *number = journal_.lastNumber() + 1;
            session_.host().Open(std::move(document));
            CopyFilesOfFrontDocument(session_, group_, *number);
            return;
        }
        session_.host().Open(std::move(document));
        Registered registered;
        if (RegisterFrontDocument(session_, group_, texts, &registered, &outcome->refused))
            *number = registered.number;
        if (registered.lostPictures.empty()) return;
        report.losses["linked picture"] += static_cast<int>(registered.lostPictures.size());
        outcome->lost = LossesLine(report);
    }

    Session& session_;
    const ImportShare& share_;
    const std::string& group_;
    ImportJournal journal_;
    bool first_ = true; ///< no file of this run has been stored yet
};

} // namespace

bool ImportShareOfFiles(const ImportShare& share, const std::function<void(const ImportOutcome&)>& report,
                        std::string* error) {
    Session session;
    if (!session.ok()) {
        *error = "the plug-in didn't start";
        return false;
    }
    if (!session.OpenDatabase(share.database, true, error)) return false;
    for (const auto& [group, files] : share.groups) {
        if (!session.MakeFolders(group, error)) return false;
        GroupImport import(session, share, group);
        if (!import.ok()) {
            *error = share.database + ": the import's own notes can't be written";
            return false;
        }
        for (const std::string& file : files) report(import.Store(file));
    }
    if (session.faulty()) *error = "the host was used wrongly; see the faults above";
    return !session.faulty();
}
