#include "platform/layershell/LayerShellDesktop.h"

#include "platform/layershell/hyprland/Bindings.h"
#include "platform/layershell/keys/HotKeys.h"
#include "platform/layershell/keys/Keyboard.h"
#include "platform/layershell/pointer/Cursor.h"
#include "platform/layershell/pointer/CursorControl.h"
#include "platform/layershell/portal/Shortcuts.h"
#include "platform/layershell/wayfire/Bindings.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/Focus.h"
#include "platform/wayland/keys/ModifierGrab.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace platform::layershell {

namespace {

// A compositor without them is no desktop of this kind at all, and nothing is said of it.
constexpr std::string_view layerShell[] = {"zwlr_layer_shell_v1"};

/// Where people write key bindings down, as far as it is known of the compositor.
std::string adviceFor(const std::string& compositor, const std::string& command) {
    if (compositor == "labwc")
        return "add <keybind key=\"W-F9\"><action name=\"Execute\" command=\"" + command +
               "\"/></keybind> to rc.xml, with a key of your choice";
    if (compositor == "wayfire")
        return "add the plugins ipc and command to wayfire.ini, or to its section [command] "
               "binding_1 = <super> KEY_F9 and command_1 = " +
               command;
    if (compositor == "Hyprland")
        return "add hl.bind(\"SUPER + F9\", hl.dsp.exec_cmd(\"" + command +
               "\")) to hyprland.lua, or bind = SUPER, F9, exec, " + command + " to hyprland.conf";
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

    std::string compositorName() const override { return compositor; }
    const platform::Displays& displays() const override { return outputs; }
    platform::Displays& displays() override { return outputs; }

    Services start(const Surroundings& given) override {
        holds = given.holds;
        const std::string product = given.identifier.substr(given.identifier.rfind('.') + 1);
        command = product + " toggle";
        advice = adviceFor(compositor, command);
        bindings = bindingsOf(given);
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
        platform::Capability binding{
            .id = "binding", .available = binds != Binds::nobody, .reason = {}};
        if (binds == Binds::portal)
            binding.reason = "The desktop's portal binds the shortcut, and may take another key "
                             "than the one that was asked for.";
        if (binds == Binds::nobody)
            binding.reason = name + " binds no shortcut for a program: " + advice + ".";
        return {std::move(hold),
                {"darkness", true, {}},
                {"edges", true,
                 "Along the sides that are armed two pixels take no clicks, and while a button is "
                 "held nothing is felt there."},
                {"hide", false, name + " lets no program hide the cursor over others' windows."},
                connection->has(wayland::Workspaces::protocol)
                    ? platform::Capability{"workspaces", true, {}}
                    : platform::Capability{"workspaces", false,
                                           name + " tells no program of its workspaces."},
                {"place", false,
                 compositor == "Hyprland"
                     ? "Hyprland tells where the cursor is only when it is asked, and not when it "
                       "moves, so nothing follows it."
                     : name + " tells no program where the cursor is, so nothing can follow it."},
                {"awake", connection->idle() != nullptr,
                 connection->idle() ? "" : name + " cannot be kept from going idle."},
                std::move(binding),
                hearsModifiers
                    ? platform::Capability{"modifiers", true, {}}
                    : platform::Capability{"modifiers", false,
                                           name + " tells no program of held keys: they do not "
                                                  "lift the hold."}};
    }

    void ownWindowChanged() override {
        if (!parts) return;
        parts->shared.input.ownWindowChanged();
        parts->cursor.reveal(parts->shared.ownWindowActive());
    }

    void end() override {
        parts.reset();
        bindings.reset();
        connection->flush();
    }

  private:
    struct Parts {
        Parts(LayerShellDesktop& own, const Surroundings& given)
            : control(*own.connection, own.outputs),
              shared(*own.connection, own.outputs, control, own.descriptors, own.log, given),
              keys(*own.connection, own.outputs, shared.pointer, own.log),
              hotKeys(own.bindings.get(), shared, given),
              grab(*own.connection, own.outputs, shared.keyboard, own.descriptors,
                   [this](bool held) { shared.tellModifiers(held); }) {
            if (own.bindings) own.bindings->hearHeldModifiers([this] { grab.begin(); });
        }

        CursorControl control;
        wayland::LayerServices shared;
        Cursor cursor;
        Keyboard keys;
        HotKeys hotKeys;
        wayland::Focus focus;
        wayland::ModifierGrab grab;
    };

    std::unique_ptr<Bindings> bindingsOf(const Surroundings& given) {
        const auto refused = [this, told = given.capabilitiesChanged](const std::string& why) {
            log.write(compositor + " does not bind the shortcut (" + why + "): " + advice);
            binds = Binds::nobody;
            // Whoever cannot bind one key for a program there binds none.
            if (compositor == "wayfire") hearsModifiers = false;
            told();
        };
        const auto variable = [](const char* name) {
            const char* const value = std::getenv(name);
            return std::string(value ? value : "");
        };
        std::unique_ptr<Bindings> own;
        if (compositor == "wayfire")
            own = wayfire::Bindings::open(variable("WAYFIRE_SOCKET"), descriptors, refused);
        if (compositor == "Hyprland")
            own = hyprland::Bindings::open(
                variable("XDG_RUNTIME_DIR") + "/hypr/" + variable("HYPRLAND_INSTANCE_SIGNATURE"),
                command.substr(0, command.find(' ')), descriptors, refused);
        if (own) {
            binds = Binds::compositor;
            hearsModifiers = true;
            return own;
        }
        // The portal of this one has no keys: its user writes a line.
        if (compositor == "Hyprland") {
            tellAdvice();
            return nullptr;
        }
        return std::make_unique<portal::Shortcuts>(
            descriptors, log, portal::Shortcuts::Program{given.identifier, command},
            [this, told = given.capabilitiesChanged](bool now) {
                binds = now ? Binds::portal : Binds::nobody;
                if (!now) tellAdvice();
                told();
            });
    }

    void tellAdvice() {
        if (!std::exchange(adviceTold, true))
            log.write("no program can have a shortcut in this session: " + advice);
    }

    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<wayland::Connection> connection;
    wayland::Outputs outputs;
    std::string compositor; ///< what it is called; may be empty
    std::string command;    ///< what a shortcut does, as the user would type it
    std::string advice;     ///< about shortcuts
    bool adviceTold = false;
    std::unique_ptr<Bindings> bindings; ///< null where nobody binds keys
    std::optional<Parts> parts;
    bool holds = true;
    enum class Binds { nobody, compositor, portal };
    Binds binds = Binds::nobody; ///< as far as it is known
    bool hearsModifiers = false;
};

} // namespace

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost) {
    auto opened = wayland::Connection::open(descriptors, log, std::move(lost), layerShell);
    if (!opened.connection) return {};
    std::vector<std::string_view> needed(std::begin(wayland::Connection::forLayers),
                                         std::end(wayland::Connection::forLayers));
    needed.emplace_back("zwlr_virtual_pointer_manager_v1");
    const auto lacking = std::ranges::find_if(
        needed, [&](std::string_view interface) { return !opened.connection->has(interface); });
    if (lacking != needed.end()) {
        log.write("the compositor has no " + std::string(*lacking) +
                  ", and so nobody can put the cursor back in its session");
        return {};
    }
    return {std::make_unique<LayerShellDesktop>(descriptors, log, std::move(opened.connection)),
            {}};
}

} // namespace platform::layershell
