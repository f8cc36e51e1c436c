#include "platform/linux/Installation.h"

#include <filesystem>

namespace platform::linux {

namespace {

std::filesystem::path executableFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

} // namespace

std::string dataFolder() {
    return (executableFolder().parent_path() / "share" / "palisor").string();
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
    const auto own = executableFolder();
    const auto installed = own.parent_path() / "libexec" / "palisor" / name;
    std::error_code error;
    return (std::filesystem::exists(installed, error) ? installed : own / name).string();
}

} // namespace platform::linux
