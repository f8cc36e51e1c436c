#include "util/MacUtils.h"

namespace palisor {

std::string MacUtils::OSVersion(const platform::Platform& services) {
    const auto version = services.system.systemVersion();
    if (!version) {
        services.log.write("Exception: the system's version cannot be read ERRORE NELLA VERSIONE "
                           "DELL'OS");
        return "999";
    }
    return std::to_string(version->major) + "." + std::to_string(version->minor) + "." +
           std::to_string(version->patch);
}

std::string MacUtils::machineModel(const platform::Platform& services) {
    const std::string model = services.system.machineModel();
    return model.empty() ? "notFound" : model;
}

std::optional<std::string> MacUtils::getSystemUUID(const platform::Platform& services) {
    return services.system.machineIdentifier();
}

} // namespace palisor
