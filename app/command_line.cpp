#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>

#include "app/commands.h"
#include "app/exit_code.h"
#include "app/import_plan.h"
#include "plugin/frame/globals.h"

namespace {

using Action = std::function<int()>;

/// Options that live as long as the parse, and what to run when their command was named.
struct Commands {
    RegisterOptions registering;
    ImportOptions import;
    ListOptions list;
    ShowOptions show;
    PlaceOptions place;
    SheetOptions sheet;
    ConvertOptions convert;
    RoundtripOptions roundtrip;
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

} // namespace

int RunCommandLine(int argc, char** argv) {
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
    AddShow(app, commands);
    AddPlace(app, commands);
    AddSheet(app, commands);
    AddConvert(app, commands);
    AddRoundtrip(app, commands);
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
