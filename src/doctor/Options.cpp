#include "doctor/Options.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace doctor {

namespace {

constexpr std::string_view ending = "-doctor";
constexpr std::string_view productOption = "--product";

std::string listOf(const std::vector<std::string>& products) {
    std::string list;
    for (const std::string& product : products)
        list += (list.empty() ? "" : ", ") + product;
    return list;
}

std::string inSmallLetters(std::string name) {
    std::ranges::transform(name, name.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    return name;
}

std::string productOf(std::string_view command) {
    std::string_view name = command.substr(command.find_last_of('/') + 1);
    if (name.ends_with(ending)) name.remove_suffix(ending.size());
    return std::string(name);
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<std::string>& products) {
    Options options;
    if (!arguments.empty()) options.product = productOf(arguments.front());
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string_view word = arguments[i];
        if (word == "--json") {
            options.json = true;
        } else if (word == "--rescue") {
            options.rescue = true;
        } else if (word == "--help" || word == "-h") {
            options.help = true;
        } else if (word == "--version" || word == "-V") {
            options.version = true;
        } else if (word == productOption && i + 1 < arguments.size()) {
            options.product = inSmallLetters(arguments[++i]);
        } else if (word.starts_with(productOption) && word.substr(productOption.size())[0] == '=') {
            options.product = inSmallLetters(std::string(word.substr(productOption.size() + 1)));
        } else if (word == productOption) {
            options.error = "--product needs one of " + listOf(products);
            return options;
        } else {
            options.error =
                "unknown option " + std::string(word) + " (--help lists the known ones)";
            return options;
        }
    }
    if (std::ranges::find(products, options.product) == products.end())
        options.error =
            "unknown product " + options.product + "; the products are " + listOf(products);
    return options;
}

std::string usage(const std::vector<std::string>& products) {
    return "Usage: palisor-doctor [--product NAME] [--json] [--rescue] [--help] [--version]\n"
           "\n"
           "Tells what of this desktop keeps the product from working, and how to mend it. "
           "Nothing\n"
           "is changed without --rescue. Ends with 0 where all is well, and with 1 otherwise.\n"
           "\n"
           "  --product NAME   the product instead of the one that the command is named after:\n"
           "                   " +
           listOf(products) +
           "\n"
           "  --json           for a bug report, without names and paths of yours\n"
           "  --rescue         mend what a program that died or hangs has left: dark monitors, a\n"
           "                   held or hidden cursor, entries that start a program that is gone\n"
           "  -h, --help       print this and end\n"
           "  -V, --version    print the product and its version and end\n";
}

} // namespace doctor
