#pragma once

/// What GNOME Shell calls the extension that comes with the program; also the name of its folder.
inline constexpr const char* shellExtension = "palisor@tamberlo.com";
