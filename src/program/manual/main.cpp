// Writes the manual and the completions for shells, at build time:  palisor-manual SOURCE_TREE
// FOLDER FOLDER gets what an installation has below "share".

#include "program/manual/Completions.h"
#include "program/manual/Page.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream file(path);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.empty()) throw std::runtime_error("cannot read " + path.string());
    return text;
}

void write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path.string());
}

/// Two of the shells look for a file that is named after the program.
void link(const fs::path& folder, const std::string& name, const std::string& target) {
    fs::remove(folder / name);
    fs::create_symlink(target, folder / name);
}

void writeAll(const std::string& sourceTree, const fs::path& share) {
    using manual::Shell;
    const auto family = manual::family(sourceTree);
    const fs::path pages = share / "man/man1";
    for (const manual::Member& one : family)
        write(pages / (one.name + ".1"), manual::productPage(one, family));
    write(pages / "palisor-doctor.1", manual::doctorPage(family));

    const fs::path frames = sourceTree + "/src/program/manual/shells";
    const auto completions = [&](Shell shell, const char* frame) {
        return manual::completions(shell, textOf(frames / frame), family);
    };
    const fs::path bash = share / "bash-completion/completions";
    const fs::path fish = share / "fish/vendor_completions.d";
    write(bash / "palisor", completions(Shell::bash, "palisor.bash"));
    write(fish / "palisor.fish", completions(Shell::fish, "palisor.fish"));
    write(share / "zsh/site-functions/_palisor", completions(Shell::zsh, "palisor.zsh"));
    for (const std::string& name : manual::programs(family)) {
        if (name == "palisor") continue;
        link(bash, name, "palisor");
        link(fish, name + ".fish", "palisor.fish");
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 3) throw std::runtime_error("usage: palisor-manual SOURCE_TREE FOLDER");
        writeAll(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
