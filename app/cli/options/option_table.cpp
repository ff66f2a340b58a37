#include "app/cli/options/option_table.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array commandTable{
    CommandRow{Command::open, "open",
               "FILE.pdf [--page N] [-o OUT.svg] [--images WHERE] [--fonts WHERE] [--text HOW]",
               "turn a page into editable artwork"},
    CommandRow{Command::open, "open",
               "FILE.pdf... [--pages LIST] [-o '{stem}-{page}.svg'] [--jobs N]",
               "the same for many pages; goes on where one fails"},
    CommandRow{
        Command::edit, "edit",
        "FILE.pdf [--page N] [--editor COMMAND] [--images WHERE] [--fonts WHERE] [--text HOW]",
        "open a page in your vector editor, and save it whenever you save there"},
    CommandRow{Command::save, "save",
               "ART.svg FILE.pdf [--page N] [--output OTHER.pdf] [--dry-run] [--force] [--plain] "
               "[--mend] [--images DIR] [--allow-files]",
               "make artwork a page of the file; ART.svg may be - (standard input)"},
    CommandRow{Command::save, "save", "--mend FILE.pdf [--output OTHER.pdf] [--dry-run]",
               "mend a damaged file, and change no page"},
    CommandRow{Command::info, "info", "FILE.pdf [--page N] [--thumbnail OUT.png]",
               "pages, boxes, rotation, objects, updates"},
    CommandRow{Command::check, "check", "FILE.pdf... [--jobs N]",
               "can it be opened, and what is damaged"},
    CommandRow{Command::log, "log", "FILE.pdf", "the updates appended to a file"},
    CommandRow{Command::revert, "revert", "FILE.pdf",
               "take the newest update off again, if it is ours"},
    CommandRow{Command::serve, "serve", "FILE.pdf... [--port N] [--stay] [--no-browser]",
               "edit pages in your browser; a folder stands for the PDFs in it"},
    CommandRow{Command::inkscape, "inkscape", "--install | --remove",
               "let Inkscape open a page of a PDF, and save it there; or take that away again"},
};

/// Those that make artwork of a page.
constexpr Commands opening = only(Command::open) | only(Command::edit);

constexpr std::array optionTable{
    OptionRow{OptionKind::page, "--page", "N", opening | only(Command::save) | only(Command::info),
              "the page, from 1; else the artwork's own, asked for on a terminal, or 1; of info: "
              "also lists the images that it draws"},
    OptionRow{OptionKind::pages, "--pages", "LIST", only(Command::open),
              "several pages: 1-3,7 or 1- for all"},
    OptionRow{OptionKind::jobs, "--jobs", "N", only(Command::open) | only(Command::check),
              "so many processes side by side; a crash in one file is none in another (1)"},
    OptionRow{
        OptionKind::output, "-o", "OUT.svg", only(Command::open),
        "where the artwork goes; - is standard output; {stem}, {page} and {folder} are replaced "
        "(FILE-pageN.svg); or --output"},
    OptionRow{OptionKind::editor, "--editor", "COMMAND", only(Command::edit),
              "what starts your editor (CORVANE_EDITOR, the desktop's choice for SVG, Inkscape)"},
    OptionRow{OptionKind::thumbnail, "--thumbnail", "OUT.png", only(Command::info),
              "write the small picture that the file has of the page, and say nothing else"},
    OptionRow{OptionKind::images, "--images", "WHERE", opening | only(Command::save),
              "the page's pictures: embed, none, or a folder (OUT-images); saving: their folder",
              "embed none"},
    OptionRow{OptionKind::fonts, "--fonts", "WHERE", opening,
              "the page's fonts: embed them (embed), none, or a folder for files to install",
              "embed none"},
    OptionRow{OptionKind::text, "--text", "HOW", opening,
              "letters follow one another (flow), or each has its place (exact)", "flow exact"},
    OptionRow{OptionKind::output, "--output", "OTHER.pdf", only(Command::save),
              "save into a copy of the file with this name; or -o"},
    OptionRow{OptionKind::dryRun, "--dry-run", "", only(Command::save),
              "say what would be saved, change nothing"},
    OptionRow{OptionKind::expectSize, "--expect-size", "BYTES",
              only(Command::save) | only(Command::revert),
              "change the file only while it is there and has so many bytes"},
    OptionRow{OptionKind::force, "--force", "", only(Command::save),
              "save even where that undoes another change, deletes much, or loses something"},
    OptionRow{OptionKind::allowFiles, "--allow-files", "",
              only(Command::save) | only(Command::edit),
              "take pictures from any folder that the artwork names"},
    OptionRow{OptionKind::plain, "--plain", "", only(Command::save) | only(Command::edit),
              "write new content uncompressed, for people who read it"},
    OptionRow{OptionKind::mend, "--mend", "", only(Command::save),
              "mend what is damaged in the file, too; every old byte stays"},
    OptionRow{OptionKind::install, "--install", "", only(Command::inkscape),
              "put the extensions into your folder of Inkscape"},
    OptionRow{OptionKind::remove, "--remove", "", only(Command::inkscape),
              "take them away; what was changed stays"},
    OptionRow{OptionKind::port, "--port", "N", only(Command::serve),
              "the port of the page's address; else one that is free"},
    OptionRow{OptionKind::stay, "--stay", "", only(Command::serve),
              "go on when no page has been open for ten minutes"},
    OptionRow{OptionKind::noBrowser, "--no-browser", "", only(Command::serve),
              "print the page's address, and open no browser"},
    OptionRow{OptionKind::passwordFile, "--password-file", "FILE", everyCommand,
              "its first line is the password of the PDF; - is standard input"},
    OptionRow{OptionKind::password, "--password", "TEXT", everyCommand,
              "the same, not advised: others on this machine can read arguments"},
    OptionRow{OptionKind::profile, "--profile", "NAME", everyCommand,
              "original: the classic behaviour only; extended: files of today (extended)",
              "original extended"},
    OptionRow{OptionKind::quiet, "--quiet", "", everyCommand, "print nothing but errors"},
    OptionRow{OptionKind::json, "--json", "", everyCommand, "print the facts as one JSON object"},
    OptionRow{OptionKind::version, "--version", "", everyCommand, "print the version"},
    OptionRow{OptionKind::help, "--help", "", everyCommand,
              "print a summary of commands and options"},
};

} // namespace

std::span<const CommandRow> commandRows() {
    return commandTable;
}

std::span<const OptionRow> optionRows() {
    return optionTable;
}

bool goesWith(OptionKind kind, Command command) {
    return std::ranges::any_of(optionTable, [&](const OptionRow& row) {
        return row.kind == kind && (row.commands & only(command)) != 0;
    });
}

std::string_view commandName(Command command) {
    return std::ranges::find(commandTable, command, &CommandRow::command)->name;
}

} // namespace corvane
