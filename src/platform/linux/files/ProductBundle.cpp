#include "platform/linux/files/ProductBundle.h"

#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/Installation.h"
#include "platform/linux/settings/PropertyList.h"
#include "platform/linux/system/SessionLanguage.h"

namespace platform::linux {

ProductBundle::ProductBundle(std::string productFolder, std::string languageCode, LookUp texts,
                             Log& log)
    : bundleFolder(std::move(productFolder)),
      language(std::move(languageCode)),
      lookUp(std::move(texts)) {
    const std::string path = bundleFolder + "/Info.plist";
    const FileRead file = readFile(path);
    ReadPropertyList read;
    if (file.state == FileRead::State::read) read = readPropertyList(file.text);
    if (read.list.empty()) log.write("the information dictionary " + path + " cannot be read");
    for (auto& [key, entry] : read.list)
        if (entry.value) information.emplace(key, std::move(*entry.value));
}

int ProductBundle::integer(std::string_view key) const {
    const auto found = information.find(key);
    return found == information.end() ? 0 : intValue(found->second);
}

std::string_view ProductBundle::string(std::string_view key) const {
    const auto found = information.find(key);
    if (found == information.end()) return {};
    return stringValue(found->second).value_or(std::string_view{});
}

std::string ProductBundle::path() const {
    return executablePath(name());
}

std::string ProductBundle::name() const {
    return bundleFolder.substr(bundleFolder.find_last_of('/') + 1);
}

std::string ProductBundle::localizedString(std::string_view key) const {
    return std::string(lookUp(language, key));
}

} // namespace platform::linux
