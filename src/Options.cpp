#include "Options.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 7> products = {
    "palisor", "vellumor", "quenlow", "orbisant", "stay-awake", "crosshair", "calendar-alerts"};

std::string productNames() {
    std::string names;
    for (const auto product : products) {
        if (!names.empty()) names += ", ";
        names += product;
    }
    return names;
}

std::string_view baseName(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

} // namespace

ParsedOptions parseOptions(int argc, char** argv) {
    ParsedOptions result;
    Options& options = result.options;
    options.product = argc > 0 ? baseName(argv[0]) : products[0];
    const auto fail = [&result](std::string text) {
        result.error = std::move(text);
        return result;
    };
    constexpr std::string_view productOption = "--product";
    for (int index = 1; index < argc; ++index) {
        const std::string_view word = argv[index];
        if (word == "--help") {
            options.help = true;
        } else if (word == "--version") {
            options.version = true;
        } else if (word == "--list-monitors") {
            options.listMonitors = true;
        } else if (word == productOption) {
            if (index + 1 == argc) return fail("--product needs one of " + productNames());
            options.product = argv[++index];
        } else if (word.starts_with(productOption) && word[productOption.size()] == '=') {
            options.product = word.substr(productOption.size() + 1);
        } else {
            return fail("unknown option " + std::string(word) + " (--help lists the known ones)");
        }
    }
    if (std::ranges::find(products, options.product) == products.end())
        return fail("unknown product " + options.product + "; the products are " + productNames());
    return result;
}

std::string usage() {
    return "Usage: palisor [--product NAME] [--list-monitors] [--help] [--version]\n"
           "\n"
           "  --product NAME   the product to run instead of the one that the command is named\n"
           "                   after: " +
           productNames() +
           "\n"
           "  --list-monitors  print one line a monitor and end\n"
           "  --help           print this and end\n"
           "  --version        print the product and its version and end\n";
}
