#include "program/client/Setup.h"

#include "program/ShellExtension.h"
#include "program/client/Words.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace client {

namespace {

namespace fs = std::filesystem;

std::string variable(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

/// Below the folder beside that of the executable, where an installation has it too.
fs::path ownExtension() {
    std::error_code error;
    const auto executable = fs::read_symlink("/proc/self/exe", error);
    return executable.parent_path().parent_path() / "share" / extensionsFolder / shellExtension;
}

/// Whether the shell looks there by itself, as it does where the program comes from a package.
bool isSeenByAll(const fs::path& extension) {
    std::string folders = variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    while (!folders.empty()) {
        const std::size_t end = folders.find(':');
        const fs::path folder = folders.substr(0, end);
        if (folder / extensionsFolder / shellExtension == extension) return true;
        folders.erase(0, end == std::string::npos ? end : end + 1);
    }
    return false;
}

void install(const fs::path& from, const fs::path& to) {
    std::error_code error;
    // What an older one had and this one has not would be loaded as well.
    fs::remove_all(to, error);
    fs::create_directories(to, error);
    for (const auto& file : fs::directory_iterator(from, error)) {
        if (error) break;
        fs::copy_file(file.path(), to / file.path().filename(),
                      fs::copy_options::overwrite_existing, error);
    }
    if (error)
        throw Failure{Exit::refused,
                      "the extension cannot be copied to " + to.string() + ": " + error.message()};
}

/// With the desktop's own command, which knows where the settings are.
void switchOn() {
    const std::string uuid = shellExtension;
    const std::string script = "old=$(gsettings get org.gnome.shell enabled-extensions) || exit\n"
                               "case $old in\n"
                               "*\"'" +
                               uuid +
                               "'\"*) exit 0 ;;\n"
                               "*'[]') new=\"['" +
                               uuid +
                               "']\" ;;\n"
                               "*) new=\"${old%]}, '" +
                               uuid +
                               "']\" ;;\n"
                               "esac\n"
                               "gsettings set org.gnome.shell enabled-extensions \"$new\"\n"
                               "gsettings set org.gnome.shell disable-user-extensions false\n";
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
    if (!fs::exists(extension / "metadata.json", error))
        throw Failure{Exit::refused, "the extension did not come with the program: " +
                                         extension.string() + " is missing"};
    if (!isSeenByAll(extension)) {
        const fs::path home = variable("HOME", "/");
        const fs::path data = variable("XDG_DATA_HOME", (home / ".local/share").string());
        install(extension, data / extensionsFolder / shellExtension);
    }
    switchOn();
    (void)std::fputs(
        "The extension is installed and switched on. Log out and in again: GNOME Shell "
        "looks for new ones only then.\n",
        stdout);
}

} // namespace client
