#include "manual/Shells.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace manual {

namespace {

constexpr const char* bash = R"(
. "$0/bash-completion/completions/${1##*/}"
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_palisor
printf '%s\n' "${COMPREPLY[@]}"
)";

// Its own functions work in the line's editor alone.
constexpr const char* zsh = R"(
share=$1
shift
words=("$@") CURRENT=$#
_files() { [[ $1 = -/ ]] && print DIR || print FILE }
_describe() {
    local -a names=("${(@)${(@P)2}%%:*}")
    print -rl -- "${(@M)names:#$words[CURRENT]*}"
}
. "$share/zsh/site-functions/_palisor"
)";

// The last word is completed as it stands; the others have no characters that would need quotes.
constexpr const char* fish = R"(
source "$argv[1]/fish/vendor_completions.d/"(string replace -r '.*/' '' -- $argv[2]).fish
complete -C "$argv[2..-1]" | string replace -r '\t.*' ''
)";

} // namespace

std::vector<std::string> shells() {
    std::vector<std::string> found;
    for (const char* shell : {"bash", "zsh", "fish"})
        if (std::filesystem::exists(std::string("/bin/") + shell) ||
            std::filesystem::exists(std::string("/usr/bin/") + shell))
            found.emplace_back(shell);
    return found;
}

Names offered(const std::string& shell, const std::vector<std::string>& line,
              support::Environment environment, const std::string& folder) {
    std::vector<std::string> command = {"env", "-C", folder, shell};
    if (shell == "bash")
        command.insert(command.end(), {"--norc", "-c", bash, SHARE});
    else if (shell == "zsh")
        command.insert(command.end(), {"-f", "-c", zsh, "zsh", SHARE});
    else
        command.insert(command.end(), {"--no-config", "-c", fish, SHARE});
    command.insert(command.end(), line.begin(), line.end());
    support::ChildProcess child({.command = command, .environment = std::move(environment)});
    const auto status = child.wait();
    Names names;
    std::istringstream lines(child.output() + child.errors());
    for (std::string one; std::getline(lines, one);)
        if (!one.empty()) names.insert(one);
    if (!status) names.insert("it does not end");
    return names;
}

} // namespace manual
