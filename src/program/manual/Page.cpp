#include "program/manual/Page.h"

#include "app/SettingsTable.h"
#include "bus/Names.h"
#include "doctor/Options.h"
#include "program/Options.h"
#include "program/Products.h"
#include "program/client/Words.h"

#include <cctype>

namespace manual {

namespace {

using palisor::Setting;

/// Text that man prints as it is.
std::string plain(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        if (letter == '\\')
            escaped += "\\e";
        else if (letter == '-')
            escaped += "\\-";
        else
            escaped += letter;
    }
    // At the beginning of a line these two would be a request.
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string bold(std::string_view text) {
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + plain(text) + "\\fR";
}

/// A term, what it takes, and what it does.
std::string entry(const std::string& term, std::string_view text) {
    return ".TP\n" + term + "\n" + plain(text) + ".\n";
}

std::string section(std::string_view title) {
    return ".SH " + std::string(title) + "\n";
}

std::string withValue(const OptionWords& option) {
    return bold(option.name) + (option.value.empty() ? "" : " " + italic(option.value));
}

template <class Table>
std::string optionEntries(const Table& table) {
    std::string text;
    for (const OptionWords& option : table)
        text += entry((option.shortName.empty() ? "" : bold(option.shortName) + ", ") +
                          withValue(option),
                      optionHelp(option, products::list()));
    return text;
}

template <class Table>
std::string synopsis(const std::string& name, const Table& table, const std::string& rest = {}) {
    std::string line = bold(name);
    for (const OptionWords& option : table)
        line += " [" + withValue(option) + "]";
    return line + rest + "\n";
}

std::string commandEntries() {
    std::string text;
    for (const client::Command& command : client::commands)
        text += entry(bold(command.name) +
                          (command.arguments.empty() ? "" : " " + italic(command.arguments)),
                      command.help);
    return text;
}

/// What a setting takes.
std::string values(const Setting& setting) {
    switch (setting.kind) {
    case Setting::Kind::flag:
        return "on|off";
    case Setting::Kind::number: {
        const auto [least, most] = setting.range();
        return std::to_string(least) + " to " + std::to_string(most) +
               (setting.unit == Setting::Unit::percent   ? " %"
                : setting.unit == Setting::Unit::seconds ? " s"
                                                         : "");
    }
    case Setting::Kind::text:
        return "TEXT";
    case Setting::Kind::shortcut:
        return "KEYS|none";
    }
    return {};
}

std::string settingEntries(int variant) {
    std::string text;
    for (const Setting& setting : palisor::settingsTable())
        if (setting.products.contains(variant))
            text += entry(bold(setting.name) + " " + italic(values(setting)),
                          std::string(setting.meaning) + " (" + setting.shownStandard(variant) +
                              " unless changed)");
    return text;
}

std::string exitEntries() {
    std::string text;
    for (const client::ExitMeaning& exit : client::exits)
        text += entry(bold(std::to_string(static_cast<int>(exit.status))), exit.meaning);
    return text;
}

/// The title takes no date: the page would differ from build to build.
std::string head(const std::string& name, const Member& product, std::string summary) {
    summary[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(summary[0])));
    return ".TH \"" + plain(name) + "\" 1 \"\" \"" + plain(product.title + " " + product.version) +
           "\" \"User Commands\"\n" + ".nr HY 0\n" + section("NAME") + plain(name) + " \\- " +
           plain(summary) + "\n";
}

std::string seeAlso(const std::string& name, const std::vector<Member>& family) {
    std::string others;
    for (const Member& one : family)
        if (one.name != name) others += bold(one.name) + "(1),\n";
    if (name != "palisor-doctor") others += bold("palisor-doctor") + "(1),\n";
    return section("SEE ALSO") + others + bold("busctl") + "(1)\n";
}

} // namespace

std::string productPage(const Member& product, const std::vector<Member>& family) {
    const std::string file = "~/.config/" + product.identifier + ".plist";
    return head(product.name, product, product.summary) + section("SYNOPSIS") +
           synopsis(product.name, client::options, " " + italic("COMMAND")) + ".br\n" +
           synopsis(product.name, programOptions) + section("DESCRIPTION") +
           plain(product.title +
                 " is a small program in the tray of the desktop. Without a command it is started; "
                 "one that runs already opens its menu. With a command the program that runs is "
                 "asked, over the session bus.") +
           "\n" + section("COMMANDS") + commandEntries() + section("OPTIONS") +
           ".SS With a command\n" + optionEntries(client::options) + ".SS At the start\n" +
           optionEntries(programOptions) + section("SETTINGS") +
           plain("As \"" + product.name +
                 " settings\" lists them. A change takes effect at once.") +
           "\n" + settingEntries(product.variant) + section("EXIT STATUS") + exitEntries() +
           section("FILES") + ".TP\n" + italic(file) + "\n" +
           plain("the settings, a property list") + "\n" + section("BUS INTERFACE") +
           plain("Panels and other programs reach the same as " + product.identifier +
                 ", interface com.tamberlo.Product1:") +
           "\n" + ".PP\n.RS 4\n.EX\nbusctl \\-\\-user introspect " + plain(product.identifier) +
           " \\e\n    " + plain(bus::objectPath(product.identifier)) + "\n.EE\n.RE\n" +
           seeAlso(product.name, family);
}

std::string doctorPage(const std::vector<Member>& family) {
    return head("palisor-doctor", family.front(),
                "looks for what keeps Palisor or a sibling from working") +
           section("SYNOPSIS") + synopsis("palisor-doctor", doctor::optionTable) +
           section("DESCRIPTION") + plain(doctor::purpose) + "\n" + section("OPTIONS") +
           optionEntries(doctor::optionTable) + seeAlso("palisor-doctor", family);
}

} // namespace manual
