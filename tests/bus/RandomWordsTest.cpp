#include "doctor/Options.h"
#include "program/Options.h"
#include "program/Products.h"
#include "program/client/Words.h"
#include "testing/Child.h"
#include "testing/TempFolder.h"
#include "testing/desktop/Product.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

// Command lines at random, always the same. PALISOR_RANDOM_LINES has more than the usual number
// tried, PALISOR_RANDOM_SEED others.

namespace client {
namespace {

long fromEnvironment(const char* name, long otherwise) {
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

std::vector<char*> pointersTo(std::vector<std::string>& line) {
    std::vector<char*> pointers;
    for (std::string& word : line)
        pointers.push_back(word.data());
    pointers.push_back(nullptr); // as the system hands them over
    return pointers;
}

/// Whether it was understood.
bool checkCommand(std::vector<std::string> line) {
    const auto pointers = pointersTo(line);
    try {
        const Words words = parse(static_cast<int>(line.size()), pointers.data());
        EXPECT_FALSE(words.command == nullptr && words.json && !words.help);
        if (words.command == nullptr || words.help) return true;
        const int count = static_cast<int>(words.arguments.size());
        EXPECT_TRUE(count >= words.command->least && count <= words.command->most);
        EXPECT_TRUE(!words.json || words.command->prints);
        return true;
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status, Exit::wrongUsage);
        EXPECT_NE(failure.sentence, "");
        return false;
    }
}

bool checkProgram(std::vector<std::string> line) {
    auto pointers = pointersTo(line);
    const ParsedOptions parsed = parseOptions(static_cast<int>(line.size()), pointers.data());
    EXPECT_TRUE(parsed.error ? !parsed.error->empty() : products::contain(parsed.options.product))
        << *parsed.error;
    return !parsed.error;
}

bool checkDoctor(const std::vector<std::string>& line) {
    static const std::vector<std::string> known(products::names.begin(), products::names.end());
    const doctor::Options options = doctor::parseOptions(line, known);
    EXPECT_TRUE(options.error ? !options.error->empty() : products::contain(options.product))
        << *options.error;
    return !options.error;
}

TEST(RandomWords, AreUnderstoodOrRefused) {
    constexpr long usual = 20'000;
    const long count = fromEnvironment("PALISOR_RANDOM_LINES", usual);
    Lines lines(static_cast<unsigned>(fromEnvironment("PALISOR_RANDOM_SEED", 1)));
    long commandLines = 0, programLines = 0, doctorLines = 0;
    for (long index = 0; index < count && !testing::Test::HasFailure(); ++index) {
        const auto line = lines.next();
        SCOPED_TRACE(index);
        commandLines += checkCommand(line) ? 1 : 0;
        programLines += checkProgram(line) ? 1 : 0;
        doctorLines += checkDoctor(line) ? 1 : 0;
    }
    // Both ways are walked, or this shows little.
    for (const long understood : {commandLines, programLines, doctorLines}) {
        EXPECT_GT(understood, count / 100);
        EXPECT_LT(understood, count * 9 / 10);
    }
}

/// A user without a desktop.
struct Nowhere {
    testing_support::TempFolder folder;
    support::Environment environment{{"PATH", std::getenv("PATH")},
                                     {"HOME", folder.path()},
                                     {"XDG_RUNTIME_DIR", folder.path()},
                                     {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"}};

    /// Runs it, and returns whether it was understood.
    bool check(const std::string& program, std::vector<std::string> line) const {
        line.front() = desktop::programs() + "/" + program;
        support::ChildProcess child({.command = line, .environment = environment});
        const auto status = child.wait();
        const std::string errors = child.errors();
        EXPECT_TRUE(status && *status >= 0 && *status <= 5) << status.value_or(-1) << errors;
        if (status != 2) return true;
        EXPECT_EQ(child.output(), "");
        EXPECT_EQ(std::ranges::count(errors, '\n'), 1) << errors;
        EXPECT_TRUE(errors.ends_with('\n'));
        EXPECT_TRUE(std::ranges::none_of(errors.substr(0, errors.size() - 1), isControl)) << errors;
        return false;
    }
    static bool isControl(unsigned char letter) { return letter < ' ' || letter == 0x7f; }
};

TEST(RandomWords, OfTheExecutablesAreRefusedInOneLineWithTheStatusForIt) {
    constexpr long usual = 150;
    const long count = fromEnvironment("PALISOR_RANDOM_RUNS", usual);
    Lines lines(static_cast<unsigned>(fromEnvironment("PALISOR_RANDOM_SEED", 1)));
    const Nowhere nowhere;
    long understood = 0;
    for (long index = 0; index < count && !testing::Test::HasFailure(); ++index) {
        const auto line = lines.next();
        SCOPED_TRACE(testing::PrintToString(line));
        for (const char* program : {"palisor", "palisor-doctor"})
            understood += nowhere.check(program, line) ? 1 : 0;
    }
    EXPECT_GT(understood, 2 * count / 50);
    EXPECT_LT(understood, 2 * count * 9 / 10);
}

} // namespace
} // namespace client
