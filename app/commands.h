/// The commands.  Each takes what the command line gave it and returns an ExitCode; data goes to standard
/// output, messages go to standard error.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

struct RegisterOptions {
    std::vector<std::string> files;
    std::string database, group, name, kind, comment, select;
    std::optional<bool> layers; ///< layers' titles go with the art; nothing: as the preferences say
    bool trace = false;
};
int RunRegister(const RegisterOptions& options);

struct ImportOptions {
    std::string folder, database, into;
    bool dryRun = false;
    int jobs = 1;
};
int RunImport(const ImportOptions& options);

struct ListOptions {
    std::string database, group;
    std::string sort; ///< name, kind or date; empty: file order
    bool json = false;
};
int RunList(const ListOptions& options);

struct SearchOptions {
    std::string database, field, text;
    std::vector<std::string> within; ///< FIELD=TEXT
    bool caseMatters = false, widthMatters = false, wholeWords = false;
    bool json = false;
};
int RunSearchCommand(const SearchOptions& options);

struct ShowOptions {
    std::string database, group, preview;
    int number = 0;
    bool json = false;
};
int RunShow(const ShowOptions& options);

struct PlaceOptions {
    std::string database, group, at, into;
    int number = 0;
    int origin = 0;
    std::vector<std::string> out;
    std::optional<bool> layers; ///< art follows its layer's title; nothing: as the preferences say
    bool trace = false;
};
int RunPlace(const PlaceOptions& options);

struct PlayOptions {
    std::string actions, database, into;
    std::string select = "all"; ///< or an id: for actions that register and don't say what
    std::vector<std::string> out;
    bool trace = false;
};
int RunPlay(const PlayOptions& options);

struct TagsOptions {
    std::string database, group, onto, target, out;
    int number = 0;
    bool trace = false;
};
int RunTags(const TagsOptions& options);

struct SheetOptions {
    std::string database, group, out;
    int size = 128;
};
int RunSheet(const SheetOptions& options);

struct ConvertOptions {
    std::string in;
    std::vector<std::string> out;
};
int RunConvert(const ConvertOptions& options);

struct SampleOptions {
    std::string out;
};
int RunSample(const SampleOptions& options);

struct RoundtripOptions {
    std::vector<std::string> files;
    bool json = false;
    int jobs = 1;
};
int RunRoundtrip(const RoundtripOptions& options);

struct EditOptions {
    std::string database, group, to;
    int number = 0;
    std::optional<std::string> name, kind, comment; ///< nothing: stays as it is
};
int RunEdit(const EditOptions& options);

struct DeleteOptions {
    std::string database, group;
    std::vector<int> numbers;
    bool yes = false;
};
int RunDelete(const DeleteOptions& options);

struct ExportOptions {
    std::string database, group, out, as;
    bool force = false;
};
int RunExport(const ExportOptions& options);

struct CheckOptions {
    std::string database;
    bool json = false;
};
int RunCheck(const CheckOptions& options);

struct RepairOptions {
    std::string database;
    bool dryRun = false;
    bool giveUp = false; ///< an interrupted change that can't be finished
};
int RunRepair(const RepairOptions& options);

struct OpenOptions {
    std::string file, database;
    std::string language; ///< en, ja or ko; empty: as the preferences say
    std::string theme;    ///< light or dark
    std::string play;     ///< a file of hands; empty: on the screen
    std::string pictures;
    std::string record; ///< a file of actions to write; empty: none
};
int RunOpen(const OpenOptions& options);

/// A line on standard error, with the program's name in front.
void Complain(const std::string& sentence);

/// Prints JSON on standard output; bytes that are no UTF-8 are replaced.
void PrintJson(const nlohmann::ordered_json& json);
