#include "platform/linux/system/LinuxSystemInfo.h"

#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/system/MachineIdentity.h"
#include "platform/linux/system/SessionLanguage.h"

#include <QVersionNumber>
#include <algorithm>
#include <ctime>
#include <string_view>
#include <sys/utsname.h>
#include <utility>

namespace platform::linux {

std::string toolkitVersion() {
    return ::qVersion();
}

namespace {

/// Up to the line's end, or the zero byte that ends a text of the device tree.
std::string firstLine(std::string text) {
    text.resize(std::min(text.find_first_of(std::string_view("\n\0", 2)), text.size()));
    while (text.ends_with(' '))
        text.pop_back();
    return text;
}

} // namespace

std::optional<Version> leadingVersion(std::string_view text) {
    const auto version = QVersionNumber::fromString(
        QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    if (version.isNull()) return std::nullopt;
    return Version{version.majorVersion(), version.minorVersion(), version.microVersion()};
}

LinuxSystemInfo::LinuxSystemInfo(std::string applicationIdentifier, std::string rootFolder)
    : application(std::move(applicationIdentifier)),
      root(std::move(rootFolder)),
      preferredLanguages(sessionLanguages()),
      country(sessionCountry()) {}

std::optional<Version> LinuxSystemInfo::systemVersion() const {
    utsname names{};
    if (::uname(&names) != 0) return std::nullopt;
    return leadingVersion(names.release);
}

std::string LinuxSystemInfo::machineModel() const {
    for (const char* path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"})
        if (auto name = firstLine(readFile(root + path).text); !name.empty()) return name;
    return {};
}

std::optional<std::string> LinuxSystemInfo::machineIdentifier() const {
    for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"})
        if (auto identity = machineIdentity(firstLine(readFile(root + path).text), application))
            return identity;
    return std::nullopt;
}

LocalTime LinuxSystemInfo::localTime() const {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    if (::localtime_r(&now, &parts) == nullptr) return {};
    return {.year = parts.tm_year + 1900,
            .month = parts.tm_mon + 1,
            .day = parts.tm_mday,
            .hour = parts.tm_hour,
            .minute = parts.tm_min,
            .second = parts.tm_sec};
}

} // namespace platform::linux
