#include "program/Options.h"

#include "program/Products.h"

#include <string_view>

namespace {

std::string_view baseName(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

struct Value {
    bool isThere = false; ///< false where the command line ends with the option's name
    std::string_view text;
};

/// The value of an option, written "--name value" or "--name=value"; nothing when the word at
/// `index` is another option. `index` moves on to a value of its own.
std::optional<Value> valueOf(std::string_view name, int argc, char** argv, int& index) {
    const std::string_view word = argv[index];
    if (word == name) {
        if (index + 1 == argc) return Value{};
        return Value{true, argv[++index]};
    }
    if (!word.starts_with(name) || word[name.size()] != '=') return std::nullopt;
    return Value{true, word.substr(name.size() + 1)};
}

} // namespace

ParsedOptions parseOptions(int argc, char** argv) {
    ParsedOptions result;
    Options& options = result.options;
    options.command = argc > 0 ? baseName(argv[0]) : products::names[0];
    options.product = products::calledBy(options.command, "palisor-tray");
    const auto fail = [&result](std::string text) {
        result.error = std::move(text);
        return result;
    };
    for (int index = 1; index < argc; ++index) {
        const std::string_view word = argv[index];
        if (word == "--help" || word == "-h") {
            options.help = true;
        } else if (word == "--version" || word == "-V") {
            options.version = true;
        } else if (word == "--list-monitors") {
            options.listMonitors = true;
        } else if (word == atLoginOption) {
            options.atLogin = true;
        } else if (word == "--verbose") {
            options.verbose = true;
        } else if (const auto product = valueOf("--product", argc, argv, index)) {
            if (!product->isThere) return fail("--product needs one of " + products::list());
            options.product = products::named(product->text);
        } else if (const auto hold = valueOf("--hold", argc, argv, index)) {
            if (hold->text != "on" && hold->text != "off") return fail("--hold needs on or off");
            options.hold = hold->text == "on";
        } else if (const auto record = valueOf("--record", argc, argv, index)) {
            if (record->text.empty()) return fail("--record needs the name of a file to write");
            options.record = record->text;
        } else if (const auto folder = valueOf("--calendar", argc, argv, index)) {
            if (folder->text.empty()) return fail("--calendar needs a folder of .ics files");
            options.calendarFolder = folder->text;
        } else {
            return fail("unknown option " + std::string(word) + " (--help lists the known ones)");
        }
    }
    if (!products::contain(options.product))
        return fail("unknown product " + options.product + "; the products are " +
                    products::list());
    return result;
}

std::string usage(const std::string& command) {
    const std::string start = "Usage: " + command + " ";
    return start + "[--product NAME] [--hold on|off] [--record FILE] [--calendar DIR]\n" +
           std::string(start.size(), ' ') +
           "[--at-login] [--list-monitors] [--verbose] [--help] [--version]\n"
           "\n"
           "  --product NAME   the product to run instead of the one that the command is named\n"
           "                   after: " +
           products::list() +
           "\n"
           "  --hold on|off    whether the X server holds the cursor at an edge (on unless said\n"
           "                   otherwise); off, it is put back after it has left\n"
           "  --record FILE    write what happens into FILE, which palisor-replay plays; it holds\n"
           "                   the settings, the cursor's way, clicks and menu choices, but only\n"
           "                   the modifiers of what is typed\n"
           "  --calendar DIR   a folder with one .ics file an event, which calendar-alerts takes\n"
           "                   instead of the desktop's own calendars\n"
           "  --at-login       for the desktop's autostart: with fewer than two monitors, wait\n"
           "                   for the session to set them up, ten seconds at most\n"
           "  --list-monitors  print one line a monitor and end\n"
           "  --verbose        log what the program does step by step, for its developers\n"
           "  -h, --help       print this and end\n"
           "  -V, --version    print the product and its version and end\n";
}
