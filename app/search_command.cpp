#include <algorithm>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/record_list.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record_index.h"
#include "plugin/store/search.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kFields[] = {"name", "kind", "comment"}; ///< by the setting's value

/// What is looked for in one field, in cp932.
struct Term {
    int16_t field = 0;
    std::string text;
};

std::optional<int16_t> FieldOfWord(const std::string& word) {
    for (int16_t field = 0; field < static_cast<int16_t>(std::size(kFields)); ++field) {
        if (word == kFields[field]) return field;
    }
    return std::nullopt;
}

/// Nothing, with a complaint, if the text can't stand in a record.
std::optional<Term> TermOf(int16_t field, const std::string& utf8) {
    std::string error;
    const auto text = Cp932OfUtf8(utf8, &error);
    if (text && text->size() < kNameBytes) return Term{field, *text};
    Complain(text ? "the text is longer than " + std::to_string(kNameBytes - 1) + " bytes" : error);
    return std::nullopt;
}

/// The terms in the order in which they narrow, or the code to end with.
struct Terms {
    std::vector<Term> terms;
    ExitCode trouble = kDone;
};

Terms TermsOf(const SearchOptions& options) {
    Terms result;
    const auto take = [&result](const std::string& word, const std::string& text) {
        if (result.trouble != kDone) return;
        const auto field = FieldOfWord(word);
        if (!field) {
            Complain("--within " + word + ": it takes FIELD=TEXT with name, kind or comment as the field");
            result.trouble = kUsage;
            return;
        }
        const auto term = TermOf(*field, text);
        if (term) {
            result.terms.push_back(*term);
        } else {
            result.trouble = kRefusedOrDiffers;
        }
    };
    take(options.field, options.text);
    for (const std::string& within : options.within) {
        const size_t equals = std::min(within.find('='), within.size());
        take(within.substr(0, equals), within.substr(std::min(equals + 1, within.size())));
        if (equals == within.size() && result.trouble == kDone) {
            Complain("--within " + within + ": there is no '=' in it");
            result.trouble = kUsage;
        }
    }
    return result;
}

void SetTerm(const Term& term) {
    globals->flCnvFnMode = term.field;
    std::copy_n(term.text.c_str(), term.text.size() + 1, globals->flCnvFnStr);
}

/// The headers of the records in the list, in its order.
class ListedRecords {
public:
    /// Null if the record has gone since.
    const RecordSummary* Find(const RihItem& item) {
        const auto [place, isNew] = groups_.try_emplace(item.groupPath);
        uint32_t expected = 0;
        if (isNew) place->second = ReadHeaders(item.groupPath, &expected);
        return item.recNo < place->second.size() ? &place->second[item.recNo] : nullptr;
    }

private:
    std::map<std::string, std::vector<RecordSummary>> groups_;
};

void PrintHits(bool json) {
    ListedRecords listed;
    Json records = Json::array();
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
        const RihItem& item = *RihItemOfRow(globals->rihList, row);
        const RecordSummary* record = listed.Find(item);
        if (record == nullptr) continue;
        if (json) {
            records.push_back(RecordListJson(item.groupPath, *record));
        } else {
            PrintRecordLine(item.groupPath, *record, true);
        }
    }
    if (json) PrintJson({{"schema", 1}, {"records", std::move(records)}});
}

} // namespace

int RunSearchCommand(const SearchOptions& options) {
    const Terms terms = TermsOf(options);
    if (terms.trouble != kDone) return terms.trouble;
    const OpenedDatabase database(options.database);
    if (database.trouble() != kDone) return database.trouble();
    globals->flCnvCase = options.caseMatters ? 1 : 0;
    globals->flCnvKanji = options.widthMatters ? 1 : 0;
    globals->flCnvWord = options.wholeWords ? 1 : 0;
    SetTerm(terms.terms[0]);
    const int32_t broken = RunSearch();
    int32_t unread = 0;
    for (size_t i = 1; i < terms.terms.size(); ++i) {
        SetTerm(terms.terms[i]);
        unread += RunLimit();
    }
    PrintHits(options.json);
    if (broken == 0 && unread == 0) return kDone;
    Complain("not all was searched: " + std::to_string(broken) + " groups are damaged or can't be read" +
             (unread != 0 ? ", " + std::to_string(unread) + " records have gone" : "") +
             "; `velquorne check` says more");
    return kRefusedOrDiffers;
}
