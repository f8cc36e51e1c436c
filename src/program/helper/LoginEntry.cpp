#include "program/helper/LoginEntry.h"

#include "app/LoginHelper.h"
#include "platform/linux/files/Installation.h"
#include "program/Options.h"
#include "util/Format.h"

namespace helper {

namespace lnx = platform::linux;

lnx::AutostartItems::Product loginEntry(const lnx::ProductBundle& bundle,
                                        const std::string& calendarFolder) {
    std::vector<std::string> command{lnx::executablePath(palisor::loginHelper::command),
                                     "--product", bundle.name()};
    if (!calendarFolder.empty()) command.insert(command.end(), {"--calendar", calendarFolder});
    return {
        .identifier = bundle.identifier(),
        .name = bundle.displayName(),
        .comment = bundle.localizedString("AVVIA_AL_LOGIN"),
        .icon = bundle.folder() + "/icon.svg",
        .helper = std::move(command),
        .options = {std::string(atLoginOption)},
        .program = bundle.path(),
        .helperName =
            palisor::formatted(bundle.localizedString("LOGIN_HELPER"), bundle.displayName()),
    };
}

} // namespace helper
