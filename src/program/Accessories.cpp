#include "program/Accessories.h"

#include "app/Keys.h"
#include "platform/qt/alerts/ShortcutRecorder.h"
#include "util/Format.h"

namespace {

namespace keys = palisor::keys;
using platform::Shortcut;
using platform::qt::ShortcutRecorder;
using platform::x11::HotKeys;

ShortcutRecorder::Model recorderModel(platform::Settings& settings, const platform::Bundle& bundle,
                                      HotKeys& hotKeys) {
    const auto label = [&hotKeys](const Shortcut& shortcut) {
        return hotKeys.modifierFlagsString(shortcut) + hotKeys.keyCodeString(shortcut);
    };
    return {.texts = {.empty = bundle.localizedString("RECORDER_EMPTY"),
                      .recording = bundle.localizedString("RECORDER_RECORDING"),
                      .hint = bundle.localizedString("RECORDER_HINT"),
                      .modifiers = bundle.localizedString("RECORDER_MODIFIERS"),
                      .clear = bundle.localizedString("RECORDER_CLEAR")},
            .enabled = [&settings] { return settings.boolForKey(keys::customShortcutEnabled); },
            .stored =
                [&settings] { return Shortcut::fromValue(settings.object(keys::customShortcut)); },
            .store =
                [&settings](std::optional<Shortcut> shortcut) {
                    if (shortcut)
                        settings.set(keys::customShortcut, shortcut->toValue());
                    else
                        settings.remove(keys::customShortcut);
                    settings.synchronize();
                },
            .label = label,
            .modifiersLabel =
                [&hotKeys](std::uint32_t flags) {
                    return hotKeys.modifierFlagsString({0, flags});
                },
            .refusal =
                [&hotKeys, &bundle, label](const Shortcut& shortcut) {
                    return hotKeys.isTaken(shortcut)
                               ? palisor::formatted(bundle.localizedString("RECORDER_TAKEN"),
                                                    label(shortcut))
                               : std::string();
                },
            .startRecording =
                [&hotKeys](ShortcutRecorder::Pressed pressed, std::function<void()> left) {
                    return hotKeys.startRecording(
                        [pressed = std::move(pressed)](
                            const platform::x11::KeyRecording::Stroke& stroke) {
                            pressed(stroke.keyCode, stroke.modifierFlags);
                        },
                        std::move(left));
                },
            .stopRecording = [&hotKeys] { hotKeys.stopRecording(); }};
}

} // namespace

QWidget* makeAccessory(const std::string& name, platform::Settings& settings,
                       const platform::Bundle& bundle, HotKeys& hotKeys, QWidget* parent) {
    if (name != palisor::accessories::shortcutRecorder) return nullptr;
    return new ShortcutRecorder(recorderModel(settings, bundle, hotKeys), parent);
}
