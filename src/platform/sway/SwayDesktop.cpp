#include "platform/sway/SwayDesktop.h"

#include "platform/sway/keys/HeldModifiers.h"
#include "platform/sway/keys/HotKeys.h"
#include "platform/sway/keys/Keyboard.h"
#include "platform/sway/pointer/Cursor.h"
#include "platform/sway/pointer/CursorControl.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/Focus.h"

#include <cstdlib>
#include <unistd.h>

namespace platform::sway {

namespace {

class SwayDesktop final : public wayland::Desktop {
  public:
    SwayDesktop(Descriptors& loop, Log& writer) : descriptors(loop), log(writer) {}

    /// An error as of `OpenedDesktop`.
    std::string join(const std::string& socket, std::function<void()> lost) {
        compositor = Compositor::open(socket, descriptors, log);
        if (!compositor) return "sway does not answer";
        auto opened = wayland::Connection::open(descriptors, log, std::move(lost));
        if (!opened.connection) return opened.error;
        connection = std::move(opened.connection);
        outputs.emplace(*connection);
        return {};
    }

    std::string compositorName() const override { return compositor->name(); }
    const platform::Displays& displays() const override { return *outputs; }
    platform::Displays& displays() override { return *outputs; }

    Services start(const Surroundings& given) override {
        holds = given.holds;
        parts.emplace(*this, given);
        auto& shared = parts->shared;
        return {shared.pointer, parts->cursor, shared.input, parts->keys,   parts->hotKeys,
                shared.windows, parts->focus,  shared.idle,  &shared.popups};
    }

    platform::Capabilities capabilities() const override {
        platform::Capability hold{.id = "hold", .available = holds, .reason = {}};
        hold.reason = holds ? "sway tells no program of a push while a mouse button is held: then "
                              "none crosses."
                            : "Switched off by --hold off.";
        return {std::move(hold),
                {"darkness", true, {}},
                {"edges", true,
                 "Along the sides that are armed two pixels take no clicks, and while a button is "
                 "held nothing is felt there."},
                {"hide", true,
                 "sway shows the cursor when it is moved or a wheel is turned, also where it is to "
                 "stay hidden, and hides it again as soon as it rests."},
                {"workspaces", true, {}},
                {"pause", false, "sway lets the hand move the cursor right after it was put."},
                {"place", false,
                 "sway tells no program where the cursor is, so nothing can follow it."},
                {"awake", connection->idle() != nullptr,
                 connection->idle() ? "" : "The compositor cannot be kept from going idle."}};
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
        Parts(SwayDesktop& own, const Surroundings& given)
            : compositor(*own.compositor),
              changes(*own.compositor, {given.helper("sway-guard"), given.folder, own.descriptors},
                      own.log),
              control(*own.compositor, changes, *own.outputs),
              shared(*own.connection, *own.outputs, control, own.descriptors, own.log, given),
              modifiers(*own.compositor, changes, *own.connection, *own.outputs, shared.keyboard,
                        own.descriptors, own.log,
                        [this](bool held) { shared.tellModifiers(held); }),
              cursor(*own.compositor, changes),
              keys(*own.compositor, *own.outputs, shared.pointer, own.log),
              hotKeys(*own.compositor, changes, shared.keyboard, shared.recording, given.settings,
                      own.log, given.later) {
            // A tiled dialogue would fill the monitor, and one on a dark monitor is hard to see.
            // They have title bars of their own. The rule is about this process alone, and so
            // nothing of it is left to be undone.
            std::string rules;
            for (const char* wish :
                 {"floating enable", "border none", "move position cursor", "move position center"})
                rules += "for_window [pid=" + std::to_string(getpid()) + "] " + wish + "; ";
            compositor.run(rules);
            compositor.onReload(this, [this, rules, changed = given.capabilitiesChanged] {
                compositor.run(rules);
                changed();
            });
        }
        ~Parts() { compositor.onReload(this, {}); }
        Parts(const Parts&) = delete;
        Parts& operator=(const Parts&) = delete;

        Compositor& compositor;
        Changes changes;
        CursorControl control;
        wayland::LayerServices shared;
        HeldModifiers modifiers;
        Cursor cursor;
        Keyboard keys;
        HotKeys hotKeys;
        wayland::Focus focus;
    };

    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<Compositor> compositor;
    std::unique_ptr<wayland::Connection> connection;
    std::optional<wayland::Outputs> outputs;
    std::optional<Parts> parts;
    bool holds = true;
};

// Another compositor that runs in a window of sway's leaves its programs the name of sway's socket.
bool isOtherCompositors(const Ipc& ipc) {
    const pid_t reached = wayland::compositorProcess();
    return reached != 0 && reached != wayland::processBehind(ipc.descriptor());
}

} // namespace

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost) {
    const char* const socket = std::getenv("SWAYSOCK");
    if (!socket) return {};
    const auto ipc = Ipc::open(socket);
    // A name that was left behind by a compositor that has gone is none.
    if (!ipc || isOtherCompositors(*ipc)) return {};
    auto desktop = std::make_unique<SwayDesktop>(descriptors, log);
    std::string error = desktop->join(socket, std::move(lost));
    if (!error.empty()) return {nullptr, std::move(error)};
    return {std::move(desktop), {}};
}

} // namespace platform::sway
