#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "ui/SliderTexts.h"
#include "util/Format.h"

#include <cmath>

// What moving a slider stores and what its label says.

namespace palisor {

using platform::EventType;
using platform::Value;

std::string darknessText(const platform::Bundle& texts, double exact) {
    const auto value = static_cast<float>(exact);
    if (static_cast<int>(value) == 0) return texts.localizedString("0_DARK_LEVEL");
    const float percent = std::nearbyint(value / keys::darkestLevel * 100);
    return std::to_string(static_cast<int>(percent)) + "%";
}

std::string timeText(const platform::Bundle& texts, double exact) {
    const int value = static_cast<int>(exact);
    if (value == 0) return texts.localizedString("0_SECONDI");
    return formatted(texts.localizedString("N_SECONDI"), value);
}

std::string sensibilityText(const platform::Bundle& texts, double value) {
    return formatted(texts.localizedString("N_SENSIBILITY"), static_cast<int>(value));
}

void AppDelegate::setLabel(Label& label, std::string text) {
    label.text = std::move(text);
    services.statusItem.labelChanged(label);
}

void AppDelegate::updateTV(const Slider& slider) {
    setLabel(*tv, darknessText(services.bundle, slider.value));
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
        setLabel(*tv, timeText(services.bundle, slider.value));
        tellWhatIsWatched();
        return;
    default:
        return;
    }
}

void AppDelegate::velocitySliderDidMove(const Slider& slider) {
    const int value = static_cast<int>(slider.value);
    setAndSynchronize(keys::VELOCITY, Value{std::int64_t{value}});
    tellWhatIsWatched();
    setLabel(*tvVelocity, sensibilityText(services.bundle, slider.value));
}

} // namespace palisor
