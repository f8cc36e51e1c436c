#include "doctor/Options.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace doctor {

namespace {

constexpr std::string_view ending = "-doctor";

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
    std::vector<const char*> words;
    for (const std::string& argument : arguments)
        words.push_back(argument.c_str());
    const int count = static_cast<int>(words.size());
    for (int i = 1; i < count; ++i) {
        const auto* const option = findOption(optionTable, words[i]);
        if (option == nullptr) {
            options.error =
                "unknown option " + std::string(words[i]) + " (--help lists the known ones)";
            return options;
        }
        if (option->flag != nullptr) {
            options.*option->flag = true;
            continue;
        }
        const auto value = optionValue(*option, count, words.data(), i);
        if (!value) {
            options.error = "--product needs one of " + listOf(products);
            return options;
        }
        options.product = inSmallLetters(std::string(*value));
    }
    if (std::ranges::find(products, options.product) == products.end())
        options.error =
            "unknown product " + options.product + "; the products are " + listOf(products);
    return options;
}

std::string usage(const std::vector<std::string>& products) {
    return usageLines("palisor-doctor", optionTable) + "\n" + helpLines("", purpose, 0) + "\n" +
           optionLines(optionTable, listOf(products));
}

} // namespace doctor
