#include "program/client/Setup.h"

#include "program/client/Words.h"
#include "program/session/ShellExtension.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace client {

namespace {

namespace fs = std::filesystem;

constexpr const char* metadata = "metadata.json";
constexpr const char* olderShells = "43";

/// Below the folder beside that of the executable, where an installation has it too.
fs::path ownExtension() {
    std::error_code error;
    const auto executable = fs::read_symlink("/proc/self/exe", error);
    return executable.parent_path().parent_path() / "share" / extensionsFolder / shellExtension;
}

/// The release of the shell: "48"; empty where there is none.
std::string shellRelease() {
    FILE* const asked = ::popen("gnome-shell --version 2>/dev/null", "r");
    if (!asked) return {};
    int release = 0;
    const bool isRead = std::fscanf(asked, "GNOME Shell %d", &release) == 1;
    ::pclose(asked);
    return isRead ? std::to_string(release) : std::string();
}

/// Whether the metadata there name the release.
bool isFor(const fs::path& folder, const std::string& release) {
    std::ifstream in(folder / metadata);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    return text.find('"' + release + '"') != std::string::npos;
}

void copyFiles(const fs::path& from, const fs::path& to, std::error_code& error) {
    for (const auto& file : fs::directory_iterator(from, error))
        if (!error && !file.is_directory())
            fs::copy_file(file.path(), to / file.path().filename(),
                          fs::copy_options::overwrite_existing, error);
}

/// What an older shell needs otherwise is in a folder of its own, and stands in for the rest.
void install(const fs::path& from, const fs::path& to, bool isOlder) {
    std::error_code error;
    // What an older one had and this one has not would be loaded as well.
    fs::remove_all(to, error);
    if (!isOlder && isSeenByAll(from)) return;
    fs::create_directories(to, error);
    if (!error) copyFiles(from, to, error);
    if (!error && isOlder) copyFiles(from / olderShells, to, error);
    if (error)
        throw Failure{Exit::refused,
                      "the extension cannot be copied to " + to.string() + ": " + error.message()};
}

/// With the desktop's own commands, which know where the settings are. The shell's own one knows
/// those extensions alone that the shell has seen.
constexpr const char* switchingOn = R"(
gsettings set org.gnome.shell disable-user-extensions false
gnome-extensions enable "$uuid" 2>/dev/null && exit
off=$(gsettings get org.gnome.shell disabled-extensions) || exit
case $off in
*"'$uuid'"*)
    off=$(printf %s "$off" | sed "s/'$uuid', //; s/, '$uuid'//; s/'$uuid'//")
    gsettings set org.gnome.shell disabled-extensions "$off"
esac
on=$(gsettings get org.gnome.shell enabled-extensions) || exit
case $on in
*"'$uuid'"*) exit 0 ;;
*'[]') on="['$uuid']" ;;
*) on="${on%]}, '$uuid']" ;;
esac
gsettings set org.gnome.shell enabled-extensions "$on"
)";

void switchOn() {
    const std::string script = std::string("uuid=") + shellExtension + switchingOn;
    if (std::system(script.c_str()) != 0)
        throw Failure{Exit::refused,
                      "the extension cannot be switched on: is GNOME Shell installed?"};
}

} // namespace

void setUp(const std::string& desktop) {
    if (desktop != "gnome")
        throw Failure{Exit::wrongUsage, "\"" + desktop + "\" needs no setup: gnome does"};
    const fs::path extension = ownExtension();
    std::error_code error;
    if (!fs::exists(extension / metadata, error))
        throw Failure{Exit::refused, "the extension did not come with the program: " +
                                         extension.string() + " is missing"};
    const std::string release = shellRelease();
    if (release.empty()) throw Failure{Exit::refused, "GNOME Shell is not installed"};
    const bool isOlder = isFor(extension / olderShells, release);
    if (!isOlder && !isFor(extension, release))
        throw Failure{Exit::refused, "the extension that came with this version of the program is "
                                     "not for GNOME Shell " +
                                         release +
                                         ": update the program, or log in to an X11 "
                                         "session"};
    install(extension, userExtension(), isOlder);
    switchOn();
    (void)std::fputs("The extension is installed and switched on. GNOME Shell looks for new files "
                     "only at login: log out and in again.\n",
                     stdout);
}

} // namespace client
