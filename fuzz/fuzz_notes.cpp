// The texts that lie on a share and say where files are or what was going on: link notes and notes of intent.
// Any bytes are taken apart, and whatever they name, nothing outside the database is touched.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/store_names.h"
#include "win32/path_names.h"
#include "win32/system_calls.h"

namespace {

namespace fs = std::filesystem;

void Require(bool holds) {
    if (!holds) std::abort();
}

struct Database {
    Database() {
        static SystemCalls calls = kSystemCalls;
        calls.flush = [](int) { return 0; };
        calls.flushDirectory = [](const char*) { return 0; };
        systemCalls = &calls;
        globals = new Globals();
        globals->swapBytes = 1;
        globals->nameLimit = 63;
        char folder[] = "/tmp/velquorne-fuzz-XXXXXX";
        Require(mkdtemp(folder) != nullptr);
        outside = fs::path(folder) / "outside" / "precious";
        root = fs::path(folder) / "root";
        Put(outside, "kept");
        fs::create_directories(root);
        std::strcpy(globals->aidbfpath, StorePathOfUtf8(root.string()).path.c_str());
    }

    static void Put(const fs::path& path, std::string_view text) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    }

    fs::path root, outside;
};

void ParseNotes(std::string_view text) {
    const LinkNote note = ParseLinkNote(text);
    Require(note.storedName.size() <= 63 && note.pooledName.size() <= 63);
    Intent intent;
    if (!ParseIntent(text, intent)) return;
    const std::string formatted = FormatIntent(intent);
    Intent again;
    Require(ParseIntent(formatted, again) && FormatIntent(again) == formatted);
}

void UseNotes(const Database& database, std::string_view text) {
    for (const auto& entry : fs::directory_iterator(database.root)) fs::remove_all(entry.path());
    Database::Put(database.root / "G.DAT" / "0" / "a.lnk", text);
    Database::Put(database.root / "G.DAT" / "2" / "a.tif", "a");
    const uint8_t name[] = "\5a.tif";
    char path[kFullPathBytes];
    ResolveLinkedFile("G", 0, name, path);
    RemoveRecordData("G", 0);
    Database::Put(database.root / "VLQ.INT", text);
    { const StoreLock lock(kStoreExclusive); }
    std::ifstream kept(database.outside);
    std::string content;
    Require(std::getline(kept, content) && content == "kept");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Database database;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ParseNotes(text);
    UseNotes(database, text);
    return 0;
}
