#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>

#include "app/commands.h"
#include "app/exit_code.h"
#include "app/import_plan.h"
#include "plugin/frame/globals.h"
#include "workbench/text/frame_layout.h"

namespace {

using Action = std::function<int()>;

/// Options that live as long as the parse, and what to run when their command was named.
struct Commands {
    RegisterOptions registering;
    ImportOptions import;
    ListOptions list;
    SearchOptions search;
    ShowOptions show;
    PlaceOptions place;
    PlayOptions play;
    TagsOptions tags;
    SheetOptions sheet;
    ConvertOptions convert;
    SampleOptions sample;
    RoundtripOptions roundtrip;
    EditOptions edit;
    DeleteOptions deleting;
    ExportOptions exporting;
    CheckOptions check;
    RepairOptions repair;
    OpenOptions open;
    Action action;
};

CLI::App* AddCommand(CLI::App& app, Commands& commands, const char* name, const char* what, Action action) {
    CLI::App* command = app.add_subcommand(name, what);
    command->final_callback([&commands, action = std::move(action)] { commands.action = action; });
    return command;
}

void AddDatabase(CLI::App* command, std::string& database) {
    command->add_option("--db", database, "the database's folder")->required()->type_name("DIR");
}

constexpr char kGroupHelp[] = "Folder/Sub/Group, Folder/Group or Group; backslashes do as well";

void AddRegister(CLI::App& app, Commands& commands) {
    RegisterOptions& o = commands.registering;
    CLI::App* command = AddCommand(app, commands, "register", "store drawings as records of a group",
                                   [&o] { return RunRegister(o); });
    command->add_option("files", o.files, "SVG files")->required()->type_name("FILE.svg");
    AddDatabase(command, o.database);
    command->add_option("--group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("--name", o.name, "the record's name; without it the drawing's title or file name");
    command->add_option("--kind", o.kind, "the record's kind");
    command->add_option("--comment", o.comment, "the record's comment");
    command->add_option("--select", o.select, "store only the art with this id")->type_name("ID");
    command->add_flag("--layers,!--no-layers", o.layers, "store the titles of whole layers with their art");
    command->add_flag("--trace", o.trace, "print each call of the host on standard error");
}

void AddImport(CLI::App& app, Commands& commands) {
    ImportOptions& o = commands.import;
    CLI::App* command = AddCommand(app, commands, "import", "store a whole folder of drawings",
                                   [&o] { return RunImport(o); });
    command->add_option("folder", o.folder, "a folder with SVG files, at any depth")->required();
    AddDatabase(command, o.database);
    command->add_option("--into", o.into, "put everything into this top folder of the database")
        ->type_name("FOLDER");
    command->add_flag("--dry-run", o.dryRun, "say what would go where, and store nothing");
    command->add_option("--jobs", o.jobs, "processes; each has groups of its own")->check(CLI::Range(1, 64));
    command->footer(kImportRule);
}

void AddList(CLI::App& app, Commands& commands) {
    ListOptions& o = commands.list;
    CLI::App* command = AddCommand(app, commands, "list", "list the groups, or the records of a group",
                                   [&o] { return RunList(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->type_name("GROUP");
    command
        ->add_option("--sort", o.sort,
                     "a group's records by name, kind or date, newest first; without it as they are stored")
        ->check(CLI::IsMember({"name", "kind", "date"}));
    command->add_flag("--json", o.json, "as JSON");
}

void AddSearch(CLI::App& app, Commands& commands) {
    SearchOptions& o = commands.search;
    CLI::App* command = AddCommand(app, commands, "search", "find records of all groups by a text",
                                   [&o] { return RunSearchCommand(o); });
    AddDatabase(command, o.database);
    command->add_option("--field", o.field, "where the text is looked for: name, kind or comment")
        ->required()
        ->check(CLI::IsMember({"name", "kind", "comment"}));
    command->add_option("text", o.text, "what is looked for; an empty text finds every record")->required();
    command->add_flag("--case", o.caseMatters, "tell capitals from small letters");
    command->add_flag("--width", o.widthMatters, "tell full-width from half-width forms");
    command->add_flag("--word", o.wholeWords, "find whole words alone");
    command->add_option("--within", o.within, "keep what also has this in another field; may be given often")
        ->type_name("FIELD=TEXT")
        ->allow_extra_args(false);
    command->add_flag("--json", o.json, "as JSON");
}

void AddShow(CLI::App& app, Commands& commands) {
    ShowOptions& o = commands.show;
    CLI::App* command =
        AddCommand(app, commands, "show", "show all that a record holds", [&o] { return RunShow(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("number", o.number, "the record's number, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--json", o.json, "as JSON");
    command->add_option("--preview", o.preview, "also write the stored picture")->type_name("FILE.png");
}

void AddPlace(CLI::App& app, Commands& commands) {
    PlaceOptions& o = commands.place;
    CLI::App* command = AddCommand(app, commands, "place", "put a record on a page as live art",
                                   [&o] { return RunPlace(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("number", o.number, "the record's number, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    command->add_option("--at", o.at, "points from the page's lower left corner, y upward")
        ->required()
        ->type_name("X,Y");
    command
        ->add_option("--origin", o.origin,
                     "what of the art lands there: 0 left top, 1 left middle, 2 left bottom, 3 centre top, "
                     "4 centre, 5 centre bottom, 6 right top, 7 right middle, 8 right bottom")
        ->check(CLI::Range(0, 8));
    command
        ->add_option("--into", o.into, "a drawing to place it in; without it a new page of 612 x 792 points")
        ->type_name("DOC.svg");
    command->add_option("--out", o.out, "files to write: .svg, .pdf, .png, .json")
        ->required()
        ->type_name("FILE");
    command->add_flag("--layers,!--no-layers", o.layers,
                      "put art on the layer whose title it was stored with; made where it is missing");
    command->add_flag("--trace", o.trace, "print each call of the host on standard error");
}

void AddPlay(CLI::App& app, Commands& commands) {
    PlayOptions& o = commands.play;
    CLI::App* command =
        AddCommand(app, commands, "play", "play a file of actions on a drawing, as 'open --record' writes it",
                   [&o] { return RunPlay(o); });
    command->add_option("actions", o.actions, "the file")->required()->type_name("ACTIONS.json");
    AddDatabase(command, o.database);
    command->add_option("--into", o.into, "the drawing; without it a new page of 612 x 792 points")
        ->type_name("DOC.svg");
    command
        ->add_option("--select", o.select,
                     "what actions that don't say so register: all, which is without this, or an id")
        ->type_name("all|ID");
    command->add_option("--out", o.out, "files to write: .svg, .pdf, .png, .json")
        ->required()
        ->type_name("FILE");
    command->add_flag("--trace", o.trace, "print each call of the host on standard error");
    command->footer(
        "Nothing is written unless every action could be played; what was registered before one that "
        "couldn't stays in the database. docs/actions.md tells what stands in the file.");
}

void AddTags(CLI::App& app, Commands& commands) {
    TagsOptions& o = commands.tags;
    CLI::App* command = AddCommand(app, commands, "tags", "hand the tags of a record to art of a drawing",
                                   [&o] { return RunTags(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("number", o.number, "the record's number, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    command->add_option("--onto", o.onto, "the drawing")->required()->type_name("DOC.svg");
    command
        ->add_option("--target", o.target,
                     "the art's id; the tags of several objects go to it and to what is around it")
        ->required()
        ->type_name("ID");
    command->add_option("--out", o.out, "the file to write: .svg, .pdf, .png, .json")
        ->required()
        ->type_name("FILE");
    command->add_flag("--trace", o.trace, "print each call of the host on standard error");
}

void AddSheet(CLI::App& app, Commands& commands) {
    SheetOptions& o = commands.sheet;
    CLI::App* command = AddCommand(app, commands, "sheet", "draw a contact sheet of the stored pictures",
                                   [&o] { return RunSheet(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->type_name("GROUP");
    command->add_option("--out", o.out, "the picture; further sheets get -2, -3 ... before the extension")
        ->required()
        ->type_name("FILE.png");
    command->add_option("--size", o.size, "pixels of a picture")->check(CLI::IsMember({32, 64, 128}));
}

void AddConvert(CLI::App& app, Commands& commands) {
    ConvertOptions& o = commands.convert;
    CLI::App* command =
        AddCommand(app, commands, "convert", "read a drawing and write it again, without a database",
                   [&o] { return RunConvert(o); });
    command->add_option("in", o.in, "an SVG file")->required()->type_name("IN.svg");
    command->add_option("--out", o.out, "files to write: .svg, .pdf, .png, .json")
        ->required()
        ->type_name("FILE");
}

void AddSample(CLI::App& app, Commands& commands) {
    SampleOptions& o = commands.sample;
    CLI::App* command =
        AddCommand(app, commands, "sample", "write a drawing that holds every kind of art, with its pictures",
                   [&o] { return RunSample(o); });
    command->add_option("--out", o.out, "the drawing")->required()->type_name("DOC.svg");
}

void AddRoundtrip(CLI::App& app, Commands& commands) {
    RoundtripOptions& o = commands.roundtrip;
    CLI::App* command =
        AddCommand(app, commands, "roundtrip",
                   "store each drawing, place it again, and compare the two documents field by field",
                   [&o] { return RunRoundtrip(o); });
    command->add_option("files", o.files, "SVG files")->required()->type_name("FILE.svg");
    command->add_flag("--json", o.json, "as JSON");
    command->add_option("--jobs", o.jobs, "processes")->check(CLI::Range(1, 64));
}

void AddEdit(CLI::App& app, Commands& commands) {
    EditOptions& o = commands.edit;
    CLI::App* command = AddCommand(app, commands, "edit", "change a record's texts, or move it to a group",
                                   [&o] { return RunEdit(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("number", o.number, "the record's number, from 0")
        ->required()
        ->check(CLI::NonNegativeNumber);
    command->add_option("--name", o.name, "the record's new name");
    command->add_option("--kind", o.kind, "the record's new kind");
    command->add_option("--comment", o.comment, "the record's new comment");
    command->add_option("--to", o.to, "the group to move it to, made if it is missing")->type_name("GROUP");
    command->footer(
        "Prints the record's group and number. A record that is moved and not otherwise changed "
        "keeps both dates.");
}

void AddDelete(CLI::App& app, Commands& commands) {
    DeleteOptions& o = commands.deleting;
    CLI::App* command =
        AddCommand(app, commands, "delete", "delete records of a group", [&o] { return RunDelete(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->required()->type_name("GROUP");
    command->add_option("numbers", o.numbers, "numbers of the records, from 0, all as they are before")
        ->required()
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--yes", o.yes, "don't ask");
}

void AddExport(CLI::App& app, Commands& commands) {
    ExportOptions& o = commands.exporting;
    CLI::App* command = AddCommand(app, commands, "export", "write records as drawings, one file for each",
                                   [&o] { return RunExport(o); });
    AddDatabase(command, o.database);
    command->add_option("group", o.group, kGroupHelp)->type_name("GROUP");
    command->add_option("--out", o.out, "where; folders in it follow the groups")
        ->required()
        ->type_name("FOLDER");
    command->add_option("--as", o.as, "svg, png or pdf")
        ->required()
        ->check(CLI::IsMember({"svg", "png", "pdf"}));
    command->add_flag("--force", o.force, "write over files that are there");
}

void AddCheck(CLI::App& app, Commands& commands) {
    CheckOptions& o = commands.check;
    CLI::App* command = AddCommand(app, commands, "check", "look for damage and leftovers; changes nothing",
                                   [&o] { return RunCheck(o); });
    AddDatabase(command, o.database);
    command->add_flag("--json", o.json, "as JSON");
}

void AddRepair(CLI::App& app, Commands& commands) {
    RepairOptions& o = commands.repair;
    CLI::App* command = AddCommand(app, commands, "repair", "mend what can be mended without guessing",
                                   [&o] { return RunRepair(o); });
    AddDatabase(command, o.database);
    command->add_flag("--dry-run", o.dryRun, "say what would be done, and change nothing");
    command->add_flag("--give-up", o.giveUp,
                      "give up an interrupted change that can't be finished; its note is kept");
    command->footer("What is changed or taken out is kept in the database's folder .velquorne-repair-TIME.");
}

void AddOpen(CLI::App& app, Commands& commands) {
    OpenOptions& o = commands.open;
    CLI::App* command =
        AddCommand(app, commands, "open", "show a drawing and the database's panel in a window",
                   [&o] { return RunOpen(o); });
    command->add_option("file", o.file, "a drawing; without it a new page")->type_name("DOC.svg");
    command
        ->add_option("--db", o.database,
                     "the database's folder, made if it is missing; without it the one of the last time")
        ->type_name("DIR");
    command->add_option("--language", o.language, "of the panel, for this time: en, ja or ko")
        ->check(CLI::IsMember({"en", "ja", "ko"}));
    command->add_option("--theme", o.theme, "light or dark")->check(CLI::IsMember({"light", "dark"}));
    CLI::Option* play = command->add_option("--play", o.play, "no screen: do what this file of hands says")
                            ->type_name("FILE");
    command->add_option("--pictures", o.pictures, "where the pictures of --play go")
        ->type_name("DIR")
        ->needs(play);
    command
        ->add_option("--record", o.record,
                     "write what is placed, undone and registered as a file for 'play', step by step")
        ->type_name("ACTIONS.json");
    command->footer("Settings that are changed in the panel are kept for the next time, but not by --play.");
}

} // namespace

int RunCommandLine(int argc, char** argv) {
    workbench::UsePangoTextLayout();
    CLI::App app(
        "Velquorne: a database of reusable vector art.\n"
        "Exit codes: 0 done, 1 something was refused or differs, 2 usage, 3 file trouble.",
        "velquorne");
    app.set_version_flag("--version", std::string("velquorne ") + kVersionText);
    app.require_subcommand(1);
    Commands commands;
    AddRegister(app, commands);
    AddImport(app, commands);
    AddList(app, commands);
    AddSearch(app, commands);
    AddShow(app, commands);
    AddPlace(app, commands);
    AddPlay(app, commands);
    AddTags(app, commands);
    AddSheet(app, commands);
    AddConvert(app, commands);
    AddSample(app, commands);
    AddRoundtrip(app, commands);
    AddEdit(app, commands);
    AddDelete(app, commands);
    AddExport(app, commands);
    AddCheck(app, commands);
    AddRepair(app, commands);
    AddOpen(app, commands);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kUsage;
    }
    try {
        return commands.action();
    } catch (const std::exception& error) {
        Complain(error.what());
        return kFileTrouble;
    }
}
