#pragma once

#include <string>

// Where the program's own files are, told from the executable (links to it are followed), so that
// a tree that was built or unpacked anywhere works like an installed one.

namespace platform::linux {

/// The program's folder in "share" beside the executable's own folder.
std::string dataFolder();

/// The pictures that the products share, one SVG file each.
std::string imagesFolder();

/// The sounds that the products share.
std::string soundsFolder();

/// The executable, or a link to it, with that name in the executable's own folder.
std::string executablePath(const std::string& name);

/// A helper executable: in the folder of "libexec" beside the executable's own, else next to it.
std::string helperPath(const std::string& name);

/// A shared library that is loaded when it is needed: in the program's folder of "lib" beside
/// the executable's own, else next to it.
std::string modulePath(const std::string& name);

} // namespace platform::linux
