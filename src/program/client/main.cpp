// The command that people and scripts type. With a command word it asks the program that runs, over
// the session bus; without one it becomes the program, under the name that it was called by.

#include "program/Printable.h"
#include "program/client/Deeds.h"
#include "program/client/Setup.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace {

/// Becomes the executable beside this one; returns where that is not possible.
int become(const char* name, std::vector<std::string> words) {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / name;
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(path.c_str(), arguments.data());
    (void)std::fprintf(stderr, "%s cannot be started: %s\n", path.c_str(), std::strerror(errno));
    return static_cast<int>(client::Exit::refused);
}

int run(int argc, char** argv) {
    const client::Words words = client::parse(argc, argv);
    if (words.help && !(words.command && words.command->name == "doctor")) {
        (void)std::fputs(client::usage(std::filesystem::path(argv[0]).filename().string()).c_str(),
                         stdout);
        return 0;
    }
    if (!words.command) return become("palisor-tray", {argv, argv + argc});
    if (words.command->name == "doctor") {
        std::vector<std::string> line{"palisor-doctor", "--product", words.product};
        if (words.json) line.emplace_back("--json");
        line.insert(line.end(), words.arguments.begin(), words.arguments.end());
        return become("palisor-doctor", std::move(line));
    }
    if (words.command->name == "setup")
        client::setUp(words.arguments[0]);
    else
        client::carryOut(words);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const client::Failure& failure) {
        (void)std::fprintf(stderr, "%s\n", printable(failure.sentence).c_str());
        return static_cast<int>(failure.status);
    }
}
