#include "platform/layershell/LayerShellDesktop.h"

#include "platform/layershell/keys/HotKeys.h"
#include "platform/layershell/keys/Keyboard.h"
#include "platform/layershell/pointer/Cursor.h"
#include "platform/layershell/pointer/CursorControl.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/Focus.h"

#include <optional>

namespace platform::layershell {

namespace {

constexpr std::string_view pointerManager = "zwlr_virtual_pointer_manager_v1";

/// Where people write key bindings down, as far as it is known of the compositor.
std::string adviceFor(const std::string& compositor, const std::string& identifier) {
    const std::string command = identifier.substr(identifier.rfind('.') + 1) + " toggle";
    if (compositor == "labwc")
        return "add <keybind key=\"W-F9\"><action name=\"Execute\" command=\"" + command +
               "\"/></keybind> to rc.xml, with a key of your choice";
    if (compositor == "wayfire")
        return "add the plugins ipc and command to wayfire.ini, or to its section [command] "
               "binding_1 = <super> KEY_F9 and command_1 = " +
               command;
    if (compositor == "Hyprland")
        return "add bind = SUPER, F9, exec, " + command + " to hyprland.conf";
    if (compositor == "niri")
        return "add Mod+F9 { spawn-sh \"" + command + "\"; } to the binds of config.kdl";
    return "have a key of the compositor's configuration run \"" + command + "\"";
}

class LayerShellDesktop final : public wayland::Desktop {
  public:
    LayerShellDesktop(Descriptors& loop, Log& writer,
                      std::unique_ptr<wayland::Connection> connected)
        : descriptors(loop),
          log(writer),
          connection(std::move(connected)),
          outputs(*connection),
          compositor(connection->compositorName()) {}

    const platform::Displays& displays() const override { return outputs; }
    platform::Displays& displays() override { return outputs; }

    Services start(const Surroundings& given) override {
        holds = given.holds;
        advice = adviceFor(compositor, given.identifier);
        parts.emplace(*this, given);
        auto& shared = parts->shared;
        return {shared.pointer, parts->cursor, shared.input, parts->keys,   parts->hotKeys,
                shared.windows, parts->focus,  shared.idle,  &shared.popups};
    }

    platform::Capabilities capabilities() const override {
        const std::string name = compositor.empty() ? "The compositor" : compositor;
        platform::Capability hold{.id = "hold", .available = holds, .reason = {}};
        hold.reason = holds ? name + " keeps the cursor on no monitor: it is put back, may show on "
                                     "the other monitor for a moment, and is not held while a "
                                     "button is down."
                            : "Switched off by --hold off.";
        return {std::move(hold),
                {"darkness", true, {}},
                {"motion", false,
                 name + " tells no program of each motion: hiding after a while, hot borders, "
                        "wrapping and the cross-hair need an X11 session."},
                {"binding", false, name + " binds no shortcut for a program: " + advice + "."},
                {"modifiers", false,
                 name + " tells no program of held keys: they do not lift the hold."}};
    }

    void ownWindowChanged() override {
        if (!parts) return;
        parts->shared.input.ownWindowChanged();
        parts->cursor.reveal(parts->shared.ownWindowActive());
    }

    void end() override {
        parts.reset();
        connection->flush();
    }

  private:
    struct Parts {
        Parts(LayerShellDesktop& own, const Surroundings& given)
            : control(*own.connection, own.outputs),
              shared(*own.connection, own.outputs, control, own.descriptors, own.log, given),
              keys(own.log),
              hotKeys({nullptr, own.advice}, own.log, shared, given) {}

        CursorControl control;
        wayland::LayerServices shared;
        Cursor cursor;
        Keyboard keys;
        HotKeys hotKeys;
        wayland::Focus focus;
    };

    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<wayland::Connection> connection;
    wayland::Outputs outputs;
    std::string compositor; ///< what it is called; may be empty
    std::string advice;     ///< about shortcuts
    std::optional<Parts> parts;
    bool holds = true;
};

} // namespace

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost) {
    std::vector<std::string_view> needed(std::begin(wayland::Connection::forLayers),
                                         std::end(wayland::Connection::forLayers));
    auto asked = wayland::Connection::open(descriptors, log, lost, {});
    // One without layers is no desktop of this kind at all.
    if (!asked.connection || !asked.connection->has("zwlr_layer_shell_v1")) return {};
    needed.push_back(pointerManager);
    for (const std::string_view interface : needed)
        if (!asked.connection->has(interface)) {
            log.write("the compositor has no " + std::string(interface) +
                      ", and so the cursor cannot be put back in its session");
            return {};
        }
    return {std::make_unique<LayerShellDesktop>(descriptors, log, std::move(asked.connection)), {}};
}

} // namespace platform::layershell
