#include "program/Options.h"

#include "program/Products.h"

namespace {

std::string_view baseName(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

/// Takes the value of an option; the sentence that refuses it otherwise.
std::optional<std::string> take(Options& options, std::string_view option,
                                std::optional<std::string_view> given) {
    const std::string_view value = given.value_or("");
    if (option == "--product") {
        if (!given) return "--product needs one of " + products::list();
        options.product = products::named(value);
    } else if (option == "--hold") {
        if (value != "on" && value != "off") return "--hold needs on or off";
        options.hold = value == "on";
    } else if (option == "--record") {
        if (value.empty()) return "--record needs the name of a file to write";
        options.record = value;
    } else {
        if (value.empty()) return "--calendar needs a folder of .ics files";
        options.calendarFolder = value;
    }
    return std::nullopt;
}

} // namespace

ParsedOptions parseOptions(int argc, char** argv) {
    ParsedOptions result;
    Options& options = result.options;
    options.command = argc > 0 ? baseName(argv[0]) : products::names[0];
    options.product = products::calledBy(options.command, "palisor-tray");
    for (int index = 1; index < argc; ++index) {
        const auto* const option = findOption(programOptions, argv[index]);
        if (option == nullptr)
            result.error =
                "unknown option " + std::string(argv[index]) + " (--help lists the known ones)";
        else if (option->flag != nullptr)
            options.*option->flag = true;
        else
            result.error = take(options, option->name, optionValue(*option, argc, argv, index));
        if (result.error) return result;
    }
    if (!products::contain(options.product))
        result.error =
            "unknown product " + options.product + "; the products are " + products::list();
    return result;
}

std::string usage(const std::string& command) {
    return usageLines(command, programOptions) + "\n" +
           optionLines(programOptions, products::list());
}
