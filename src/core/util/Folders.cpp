#include "util/MacUtils.h"

namespace palisor {

std::optional<std::string> MacUtils::getPathGenerico(const platform::Platform& services) {
    return services.files.documentsFolder();
}

std::optional<std::string> MacUtils::filePath(const platform::Platform& services,
                                              const std::string& name) {
    const auto folder = getPathGenerico(services);
    return folder ? std::optional(*folder + "/" + name) : std::nullopt;
}

std::optional<std::string> MacUtils::downloadFolder(const platform::Platform& services) {
    return services.files.downloadsFolder();
}

std::optional<std::string> MacUtils::desktopFolder(const platform::Platform& services) {
    return services.files.desktopFolder();
}

std::optional<std::string> MacUtils::downloadURL(const platform::Platform& services) {
    auto folder = downloadFolder(services);
    if (folder && services.textCodec.percentEncoded(*folder, "") != *folder) folder.reset();
    return folder;
}

} // namespace palisor
