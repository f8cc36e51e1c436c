#include "program/Accessories.h"

#include "app/Keys.h"
#include "platform/qt/alerts/ShortcutRecorder.h"
#include "util/Format.h"

namespace {

namespace keys = palisor::keys;
using platform::Shortcut;
using platform::qt::ShortcutRecorder;

ShortcutRecorder::Model recorderModel(platform::Settings& settings,
                                      const platform::Bundle& bundle) {
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
            .refusal =
                [&bundle](const std::string& label) {
                    return palisor::formatted(bundle.localizedString("RECORDER_TAKEN"), label);
                }};
}

} // namespace

QWidget* makeAccessory(const std::string& name, platform::Settings& settings,
                       const platform::Bundle& bundle, platform::RecordableHotKeys& hotKeys,
                       QWidget* parent) {
    if (name != "customShortcutView") return nullptr;
    return new ShortcutRecorder(recorderModel(settings, bundle), hotKeys, parent);
}
