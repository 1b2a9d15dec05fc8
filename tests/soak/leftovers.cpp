#include "tests/soak/leftovers.h"

#include <algorithm>
#include <string_view>

#include "app/store_check.h"

namespace {

constexpr std::string_view kUncounted = "a whole record behind the counted ones is not shown";

/// No record that a reader sees is in them.
constexpr std::string_view kLeftovers[] = {
    kUncounted, // the next append writes over it
    " bytes behind the last record belong to none",
    "the group was begun and holds nothing yet",
    "a work file that an interrupted change has left",
    "what a delete has left",
    "what an interrupted copy has left",
    "no record's note names this picture",   // its record is deleted
    "the files of a group that isn't there", // the group was empty
};

bool IsLeftover(const Finding& finding) {
    return std::ranges::any_of(kLeftovers,
                               [&](std::string_view text) { return finding.what.ends_with(text); });
}

bool IsMissingFile(const Finding& finding) {
    return finding.what == "its linked pictures are missing" ||
           finding.what.starts_with("the linked picture 'picture.png' is missing");
}

size_t RecordsWithoutFile(const Model& model) {
    size_t found = 0;
    for (const auto& [group, records] : model)
        found += static_cast<size_t>(std::ranges::count_if(
            records, [](const ModelRecord& record) { return record.linked && record.file.empty(); }));
    return found;
}

} // namespace

std::string UnexplainedFindings(const std::filesystem::path& root, const Model& model) {
    std::string unexplained;
    size_t missing = 0, uncounted = 0;
    for (const Finding& finding : CheckStore(root.string(), Looks::kOnce)) {
        if (finding.what == kUncounted) ++uncounted;
        if (IsMissingFile(finding))
            ++missing;
        else if (!IsLeftover(finding))
            unexplained += NameOfSeverity(finding.severity) + std::string(" ") + finding.place + " " +
                           finding.what + "\n";
    }
    const size_t without = RecordsWithoutFile(model);
    // A record that isn't counted is looked at too, and its file was never copied.
    if (missing < without || missing > without + uncounted)
        unexplained += "the check misses " + std::to_string(missing) + " files, and " +
                       std::to_string(without) + " are missing\n";
    return unexplained;
}
