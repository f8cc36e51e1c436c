#pragma once

#include <filesystem>

/// What GNOME Shell calls the extension that comes with the program; also the name of its folder.
inline constexpr const char* shellExtension = "palisor@tamberlo.com";

/// Where the shell looks for extensions, in each folder of data.
inline constexpr const char* extensionsFolder = "gnome-shell/extensions";

/// The command that installs it for the user.
inline constexpr const char* shellSetup = "palisor setup gnome";

/// Where the user has extensions of GNOME Shell of his own, this one's folder.
std::filesystem::path userExtension();

/// Whether the shell looks there by itself, as it does where the program comes from a package.
bool isSeenByAll(const std::filesystem::path& extension);

/// Whether the extension is where the shell would find it, which looks only at login.
bool isExtensionInstalled();
