#include "util/MacUtils.h"

namespace palisor {

void MacUtils::showSimpleModalAlertWithTitle_message_modal(const platform::Platform& services,
                                                           const std::string& title,
                                                           const std::string& message, bool) {
    services.log.write("showSimpleModalAlertWithTitle: " + title + " - " + message);
    services.alerts.runModal({.message = title,
                              .informative = message,
                              .buttons = {services.bundle.localizedString("OK")}});
}

void MacUtils::sendSimpleNotificationWithTitle_text_sound_identifier(
    const platform::Platform& services, const std::optional<std::string>& title,
    const std::optional<std::string>& text, const std::optional<std::string>& sound,
    const std::optional<std::string>& identifier) {
    services.notifications.deliver({.title = title.value_or(""),
                                    .text = text.value_or(""),
                                    .sound = sound.value_or(""),
                                    .identifier = identifier.value_or("")});
}

} // namespace palisor
