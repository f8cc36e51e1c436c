#pragma once

#include "program/Products.h"
#include "program/client/Words.h"

#include <algorithm>
#include <cstdlib>
#include <random>

// Command lines at random, always the same. PALISOR_RANDOM_LINES has more than the usual number
// tried, PALISOR_RANDOM_RUNS of the executables, PALISOR_RANDOM_SEED others.

namespace client {

inline long fromEnvironment(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::atol(text) : otherwise;
}

/// Words that are right, nearly right, and none at all.
class Lines {
  public:
    explicit Lines(unsigned seed) : random(seed) {}

    std::vector<std::string> next() {
        std::vector<std::string> line{
            pick({"palisor", "/usr/bin/vellumor", "Palisor", "palisor-tray", "palisor-doctor", "",
                  "/", "stay-awake"})};
        for (unsigned count = below(6); count > 0; --count)
            line.push_back(word());
        return line;
    }

  private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    std::string pick(const std::vector<std::string>& from) {
        return from[below(static_cast<unsigned>(from.size()))];
    }

    std::string known() {
        switch (below(4)) {
        case 0:
            return std::string(commands[below(commands.size())].name);
        case 1:
            return std::string(settingsWords[below(settingsWords.size())].name);
        case 2:
            return std::string(products::names[below(products::names.size())]);
        default:
            return pick({"--product", "--product=", "--product=orbisant",
                         "--help",    "-h",         "--json",
                         "--hold",    "--hold=off", "--record",
                         "--record=", "--calendar", "--at-login",
                         "--version", "--verbose",  "--list-monitors",
                         "--rescue",  "-",          "--",
                         "60",        "-1",         "86401",
                         "DUMMY0",    "push"});
        }
    }

    std::string word() {
        std::string text = below(8) == 0 ? noise() : known();
        for (unsigned faults = below(3) == 0 ? 1 + below(3) : 0; faults > 0 && !text.empty();
             --faults) {
            const auto at = below(static_cast<unsigned>(text.size()));
            switch (below(3)) {
            case 0:
                text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, letter());
                break;
            default:
                text[at] = letter();
            }
        }
        return text;
    }

    std::string noise() {
        constexpr unsigned longest = 3000;
        std::string text(below(50) == 0 ? below(longest) : below(12), ' ');
        std::ranges::generate(text, [this] { return letter(); });
        return text;
    }

    /// Any but the one that ends a word.
    char letter() { return static_cast<char>(1 + below(255)); }

    std::mt19937 random;
};

} // namespace client
