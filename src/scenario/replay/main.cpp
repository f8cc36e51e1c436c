#include "scenario/replay/Player.h"

#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>

// palisor-replay: plays a scenario and prints every effect that reaches the platform.

namespace palisor::replay {
namespace {

constexpr int success = 0;
constexpr int outputFailed = 1;
constexpr int wrongInput = 2;

constexpr const char* usage =
    "Usage: palisor-replay [--only EFFECT,...] FILE\n"
    "\n"
    "Plays a scenario, one JSON object a line, over a virtual desktop and prints every\n"
    "effect that reaches the platform, one JSON object a line.\n"
    "\n"
    "  FILE               the scenario; - reads standard input\n"
    "  --only EFFECT,...  print the effects named only; records always print\n"
    "  --help             print this text\n"
    "\n"
    "Exit status: 0 when the scenario or its program has ended, 1 when the output cannot\n"
    "be written, 2 for wrong arguments or a wrong scenario.\n";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    bool help = false;
    std::optional<std::string> file;
    std::set<std::string, std::less<>> only;
};

void addNames(std::set<std::string, std::less<>>& names, std::string_view list) {
    while (true) {
        const std::string_view name = list.substr(0, list.find(','));
        if (name.empty()) throw UsageError("--only takes names of effects, with commas between");
        names.emplace(name);
        if (name.size() == list.size()) return;
        list.remove_prefix(name.size() + 1);
    }
}

Options parse(std::span<char*> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--only") {
            if (++i == arguments.size()) throw UsageError("--only takes names of effects");
            addNames(options.only, arguments[i]);
        } else if (argument.starts_with("--only=")) {
            addNames(options.only, argument.substr(argument.find('=') + 1));
        } else if (argument.starts_with('-') && argument != "-") {
            throw UsageError("unknown option " + std::string(argument));
        } else if (options.file) {
            throw UsageError("one scenario at a time");
        } else {
            options.file = argument;
        }
    }
    if (!options.help && !options.file) throw UsageError("no scenario given");
    return options;
}

int play(const Options& options, std::istream& input) {
    Scenario scenario(input);
    Output output(stdout, options.only);
    try {
        Player(scenario, output).play();
        return success;
    } catch (const StepError& error) {
        std::cerr << *options.file << ':' << scenario.line() << ": " << error.what() << '\n';
        return wrongInput;
    } catch (const OutputError& error) {
        std::cerr << "palisor-replay: cannot write: " << error.what() << '\n';
        return outputFailed;
    }
}

int run(std::span<char*> arguments) {
    const Options options = parse(arguments);
    if (options.help) {
        std::cout << usage;
        return success;
    }
    if (*options.file == "-") return play(options, std::cin);
    std::ifstream file(*options.file);
    if (!file) throw UsageError("cannot read " + *options.file + ": " + std::strerror(errno));
    return play(options, file);
}

} // namespace
} // namespace palisor::replay

int main(int argc, char** argv) {
    try {
        return palisor::replay::run(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    } catch (const palisor::replay::UsageError& error) {
        std::cerr << "palisor-replay: " << error.what() << "; see --help\n";
        return palisor::replay::wrongInput;
    }
}
