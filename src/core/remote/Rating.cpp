#include "app/AppDelegate.h"
#include "app/Variants.h"
#include "util/MacUtils.h"

// The question whether the user likes the product, asked once a version.

namespace palisor {

void AppDelegate::ratefunc() {
    if (windowInfo->isVisible()) {
        closeInfo();
        flagriopenInfo = true;
    }
    const auto& bundle = services.bundle;
    alertrate = {
        .message = bundle.displayName(),
        .informative = bundle.localizedString("RATE_THIS_APP"),
        .buttons = {bundle.localizedString("MI_PIACE"), bundle.localizedString("NON_MI_PIACE")}};
    alertDidEnd_returnCode_contextInfo(&alertrate, services.alerts.runModal(alertrate), nullptr);
}

void AppDelegate::alertDidEnd_returnCode_contextInfo(const platform::Alert*, int returnCode,
                                                     const void*) {
    const std::string_view id = variants::storeId(IDApp());
    if (returnCode == platform::Alerts::defaultButton && !id.empty())
        MacUtils::openStorePageWithID_osx(services, std::string(id), true);
    // Whatever the answer was: it is not asked again for this version.
    setAndSynchronize(getCurrentRateString(), platform::Value{true});
    if (!flagriopenInfo) return;
    flagriopenInfo = false;
    openInfo();
}

std::string AppDelegate::getCurrentRateString() const {
    return "RATE_" + services.bundle.version();
}

} // namespace palisor
