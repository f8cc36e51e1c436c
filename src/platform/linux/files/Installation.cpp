#include "platform/linux/files/Installation.h"

#include <filesystem>

namespace platform::linux {

namespace {

std::filesystem::path executableFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

/// A built tree has no folders beside that of its executables.
std::string installedOrBuilt(const char* folder, const std::string& name) {
    const auto own = executableFolder();
    const auto installed = own.parent_path() / folder / PROGRAM_FOLDER / name;
    std::error_code error;
    return (std::filesystem::exists(installed, error) ? installed : own / name).string();
}

} // namespace

std::string dataFolder() {
    return (executableFolder().parent_path() / "share" / PROGRAM_FOLDER).string();
}

std::string imagesFolder() {
    return dataFolder() + "/images";
}

std::string soundsFolder() {
    return dataFolder() + "/sounds";
}

std::string executablePath(const std::string& name) {
    return (executableFolder() / name).string();
}

std::string helperPath(const std::string& name) {
    return installedOrBuilt("libexec", name);
}

std::string modulePath(const std::string& name) {
    return installedOrBuilt("lib", name);
}

} // namespace platform::linux
