#include <filesystem>
#include <iostream>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "workbench/render/contact_sheet.h"

namespace {

workbench::SheetSection SectionOf(const std::string& group) {
    workbench::SheetSection section;
    section.heading = GroupForPeople(group);
    uint32_t expected = 0;
    for (const RecordSummary& record : ReadHeaders(group, &expected)) {
        section.cells.push_back(
            {ReadPreview(group, record.number), FieldText(record.header.name, sizeof record.header.name)});
    }
    if (section.cells.size() != expected) Complain(section.heading + ": damaged, not all records are shown");
    return section;
}

/// sheet.png, sheet-2.png, sheet-3.png ...
std::string NumberedName(const std::string& name, size_t number) {
    if (number == 1) return name;
    const std::filesystem::path path(name);
    std::filesystem::path numbered = path.parent_path() / path.stem();
    numbered += "-" + std::to_string(number);
    numbered += path.extension();
    return numbered.string();
}

} // namespace

int RunSheet(const SheetOptions& options) {
    const OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    std::vector<workbench::SheetSection> sections;
    for (const std::string& group : database.Groups()) sections.push_back(SectionOf(group));
    std::string error;
    size_t number = 0;
    for (const workbench::PagePicture& sheet : workbench::DrawContactSheets(sections, options.size)) {
        const std::vector<uint8_t> png = workbench::PngOfPicture(sheet, &error);
        const std::string name = NumberedName(options.out, ++number);
        if (png.empty() || !SaveBytes(name, png.data(), png.size(), &error)) {
            Complain(error);
            return kFileTrouble;
        }
        std::cout << name << "\n";
    }
    return kDone;
}
