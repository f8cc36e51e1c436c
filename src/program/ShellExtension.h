#pragma once

/// What GNOME Shell calls the extension that comes with the program; also the name of its folder.
inline constexpr const char* shellExtension = "palisor@tamberlo.com";

/// Where the shell looks for extensions, in each folder of data.
inline constexpr const char* extensionsFolder = "gnome-shell/extensions";

/// The command that installs it for the user.
inline constexpr const char* shellSetup = "palisor setup gnome";
