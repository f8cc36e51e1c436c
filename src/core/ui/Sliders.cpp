#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "util/Format.h"

#include <cmath>

// What moving a slider stores and what its label says.

namespace palisor {

using platform::EventType;
using platform::Value;

void AppDelegate::setLabel(Label& label, std::string text) {
    label.text = std::move(text);
    services.statusItem.labelChanged(label);
}

void AppDelegate::updateTV(const Slider& slider) {
    const auto value = static_cast<float>(slider.value);
    if (static_cast<int>(value) == 0) {
        setLabel(*tv, services.bundle.localizedString("0_DARK_LEVEL"));
        return;
    }
    const float percent = std::nearbyint(value / keys::darkestLevel * 100);
    setLabel(*tv, std::to_string(static_cast<int>(percent)) + "%");
}

void AppDelegate::sliderDidMove(const Slider& slider) {
    const int value = static_cast<int>(slider.value);
    switch (IDApp()) {
    case variants::barrier: {
        // Building the menu sends this too, and must not rewrite the setting.
        const EventType current = services.application.currentEvent().type;
        if (current != EventType::leftMouseUp && current != EventType::leftMouseDragged) return;
        setAndSynchronize(keys::OTHERS_DARK, Value{std::int64_t{value}});
        updateTV(slider);
        updateShadow();
        return;
    }
    case variants::cursorHider:
        setAndSynchronize(keys::SCHEDULE, Value{std::to_string(value)});
        setLabel(*tv, value == 0 ? services.bundle.localizedString("0_SECONDI")
                                 : formatted(services.bundle.localizedString("N_SECONDI"), value));
        return;
    default:
        return;
    }
}

void AppDelegate::velocitySliderDidMove(const Slider& slider) {
    const int value = static_cast<int>(slider.value);
    setAndSynchronize(keys::VELOCITY, Value{std::int64_t{value}});
    setLabel(*tvVelocity, formatted(services.bundle.localizedString("N_SENSIBILITY"), value));
}

} // namespace palisor
