#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/open_database.h"
#include "app/record_loading.h"
#include "app/safe_names.h"
#include "app/worker_pool.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"

namespace {

namespace fs = std::filesystem;

class Export {
public:
    Export(workbench::Host& host, const ExportOptions& options) : host_(host), options_(options) {}

    int Run(const std::vector<std::string>& groups) {
        size_t total = 0;
        for (const std::string& group : groups) total += CountRecords(group.c_str());
        {
            Progress progress(total);
            for (const std::string& group : groups) WriteGroup(group, progress);
        }
        Complain(std::to_string(written_) + " of " + std::to_string(total) + " records written to " +
                 options_.out);
        return worst_;
    }

private:
    void WriteGroup(const std::string& group, Progress& progress);
    bool WriteRecordAs(const std::string& group, const RecordSummary& record, const std::string& path,
                       std::string* error);
    std::string CopyOfPicture(const std::string& picture, const std::string& path, std::string* error);
    bool CopyPictures(workbench::Document& document, const std::string& path, std::string* error);
    bool PutInPlace(const std::string& made, const std::string& path, std::string* error);
    std::string FolderOf(const std::string& group);

    void Fail(const std::string& what, int code) {
        Complain(what);
        worst_ = std::max(worst_, code);
    }

    workbench::Host& host_;
    const ExportOptions& options_;
    NamesInFolders names_;
    std::map<std::string, std::string> folders_; ///< parts of group names to their folders
    size_t written_ = 0;
    int worst_ = kDone;
};

/// A folder for each part of the name; parts that would meet in one folder are kept apart.
std::string Export::FolderOf(const std::string& group) {
    std::array<char, kPartBytes> parts[3] = {};
    SplitGroupName(group.c_str(), parts[0].data(), parts[1].data(), parts[2].data());
    std::string folder = options_.out;
    std::string key;
    for (int i = 0; i < 3; ++i) {
        const std::string part = FieldText(parts[i].data(), parts[i].size());
        if (part.empty()) continue;
        key += "\\" + part;
        auto known = folders_.find(key);
        if (known == folders_.end())
            known = folders_.emplace(key, folder + "/" + names_.Take(folder, SafeFileName(part), "")).first;
        folder = known->second;
    }
    return folder;
}

void Export::WriteGroup(const std::string& group, Progress& progress) {
    uint32_t expected = 0;
    const auto records = ReadHeaders(group, &expected);
    const std::string folder = FolderOf(group);
    std::error_code trouble;
    if (!records.empty()) fs::create_directories(folder, trouble);
    if (trouble) return Fail(folder + ": " + trouble.message(), kFileTrouble);
    for (const RecordSummary& record : records) {
        const std::string name = FieldText(record.header.name, sizeof record.header.name);
        const std::string path = folder + "/" + names_.Take(folder, SafeFileName(name), "." + options_.as);
        std::string error;
        if (WriteRecordAs(group, record, path, &error))
            ++written_;
        else
            Fail(GroupForPeople(group) + ", record " + std::to_string(record.number) + ": " + error,
                 kRefusedOrDiffers);
        progress.Step();
    }
    if (records.size() != expected)
        Fail(GroupForPeople(group) + ": damaged: " + std::to_string(records.size()) + " of " +
                 std::to_string(expected) + " records can be read",
             kRefusedOrDiffers);
}

/// The page is as large as the record's art.
bool Export::WriteRecordAs(const std::string& group, const RecordSummary& record, const std::string& path,
                           std::string* error) {
    std::error_code ignored;
    if (!options_.force && fs::exists(fs::symlink_status(path, ignored))) {
        *error = path + " is there already";
        return false;
    }
    auto document = std::make_unique<workbench::Document>();
    document->page = {0, std::max(HeightOf(record.header), 1.0), std::max(WidthOf(record.header), 1.0), 0};
    document->title = FieldText(record.header.name, sizeof record.header.name);
    host_.Open(std::move(document));
    const bool loaded =
        LoadRecord(group, record.number, {0, 0}, kOriginLeftBottom, LinkedFileUse::kLook, error);
    const auto filled = host_.Close();
    if (!loaded) return false;
    if (options_.as == "svg" && !CopyPictures(*filled, path, error)) return false;
    const std::string made = fs::path(path).parent_path().string() + "/.velquorne-export." + options_.as;
    return SaveDocument(*filled, made, error) && PutInPlace(made, path, error);
}

/// The copy of a linked picture beside the file at `path`; empty if it can't be made.
std::string Export::CopyOfPicture(const std::string& picture, const std::string& path, std::string* error) {
    const fs::path source(picture), target(path);
    const std::string folder = target.parent_path().string();
    const std::string stem = SafeFileName(target.stem().string() + " - " + source.stem().string());
    const std::string copy = folder + "/" + names_.Take(folder, stem, source.extension().string());
    std::error_code trouble;
    fs::copy_file(source, copy,
                  options_.force ? fs::copy_options::overwrite_existing : fs::copy_options::none, trouble);
    if (!trouble) return copy;
    *error = copy + ": " + trouble.message();
    return "";
}

/// An SVG links to its pictures, and those in the database move when their record is placed, so the file gets
/// copies of its own.  A picture that is missing stays a link that leads nowhere.
bool Export::CopyPictures(workbench::Document& document, const std::string& path, std::string* error) {
    std::map<std::string, std::string> copies;
    for (size_t layer = 0; layer < document.LayerCount(); ++layer) {
        workbench::ForEachArt(*document.LayerAt(layer).root, [&](const workbench::Art& art) {
            auto* placed = std::get_if<workbench::PlacedData>(&document.Find(art.handle)->data);
            std::error_code missing;
            if (placed == nullptr || !error->empty() || !fs::is_regular_file(placed->file, missing)) return;
            std::string& copy = copies[placed->file];
            if (copy.empty()) copy = CopyOfPicture(placed->file, path, error);
            placed->file = copy;
        });
    }
    return error->empty();
}

/// Without --force the name is taken in one step that fails if there is a file by now.
bool Export::PutInPlace(const std::string& made, const std::string& path, std::string* error) {
    bool done;
    if (options_.force) {
        done = ::rename(made.c_str(), path.c_str()) == 0;
    } else {
        done = ::link(made.c_str(), path.c_str()) == 0;
        // Some file systems have no second names.
        if (!done && errno != EEXIST && ::access(path.c_str(), F_OK) != 0)
            done = ::rename(made.c_str(), path.c_str()) == 0;
    }
    if (!done) *error = path + ": " + std::strerror(errno);
    if (!done || !options_.force) ::unlink(made.c_str());
    return done;
}

} // namespace

int RunExport(const ExportOptions& options) {
    OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    std::error_code trouble;
    fs::create_directories(options.out, trouble);
    if (!fs::is_directory(options.out, trouble)) {
        Complain(options.out + ": the folder can't be made");
        return kFileTrouble;
    }
    return database.Ended(Export(database.host(), options).Run(database.Groups()));
}
