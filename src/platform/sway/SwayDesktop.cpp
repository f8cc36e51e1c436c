#include "platform/sway/keys/HeldModifiers.h"
#include "platform/sway/keys/HotKeys.h"
#include "platform/sway/keys/Keyboard.h"
#include "platform/sway/pointer/Cursor.h"
#include "platform/sway/pointer/CursorControl.h"
#include "platform/wayland/Desktop.h"
#include "platform/wayland/overlay/IdleInhibitor.h"
#include "platform/wayland/overlay/Windows.h"
#include "platform/wayland/pointer/InputEvents.h"

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
        // Later ones map devices another way, by which the tests' pointer was not held.
        constexpr int firstUntried = 9;
        if (compositor->isAtLeast(firstUntried))
            return "the cursor is held in sway up to 1.8 only; log in to an X11 session";
        auto opened = wayland::Connection::open(descriptors, log, std::move(lost));
        if (!opened.connection) return opened.error;
        connection = std::move(opened.connection);
        outputs.emplace(*connection);
        return {};
    }

    const platform::Displays& displays() const override { return *outputs; }
    platform::Displays& displays() override { return *outputs; }

    Services start(const Surroundings& given) override {
        parts.emplace(*this, given);
        return {parts->pointer, parts->cursor,  parts->input, parts->keys,
                parts->hotKeys, parts->windows, parts->focus, parts->idle};
    }

    void ownWindowChanged() override {
        if (!parts) return;
        parts->input.ownWindowChanged();
        parts->cursor.reveal(parts->ownWindowActive());
    }

    void end() override {
        parts.reset();
        connection->flush();
    }

  private:
    struct Parts {
        Parts(SwayDesktop& own, const Surroundings& given)
            : compositor(*own.compositor),
              ownWindowActive(given.ownWindowActive),
              changes(*own.compositor, {given.guard, given.folder}, own.log),
              keyboard(*own.connection),
              seat(*own.connection, keyboard),
              control(*own.compositor, changes, *own.outputs),
              hold(*own.connection, *own.outputs, seat, control, given.holds),
              pointer(*own.connection, *own.outputs, seat, control, hold),
              input(*own.connection, own.descriptors, *own.outputs, seat, pointer, hold,
                    given.ownWindowActive),
              modifiers(*own.compositor, changes, *own.connection, *own.outputs, keyboard,
                        own.descriptors, [this](bool held) { tellModifiers(held); }),
              cursor(*own.compositor, changes),
              keys(*own.compositor, own.log),
              recording(*own.connection, *own.outputs, keyboard, given.later),
              hotKeys(*own.compositor, changes, keyboard, recording, given.settings, given.later),
              windows(*own.connection, *own.outputs, seat, own.log),
              idle(*own.connection, *own.outputs) {
            // A tiled menu would fill the monitor. The rule is about this process alone, and so
            // nothing of it is left to be undone.
            const std::string rule =
                "for_window [pid=" + std::to_string(getpid()) + "] floating enable";
            compositor.run(rule);
            compositor.onReload(this, [this, rule] { compositor.run(rule); });
            // A menu that no window belongs to is one of its own, and the only one without a title.
            compositor.onOwnWindow([this, untitled = given.identifier](auto id, const auto& title) {
                if (!title.empty() && title != untitled) return;
                compositor.run("[con_id=" + std::to_string(id) +
                               "] border none, move position cursor");
            });
        }
        ~Parts() {
            compositor.onOwnWindow({});
            compositor.onReload(this, {});
        }
        Parts(const Parts&) = delete;
        Parts& operator=(const Parts&) = delete;

        // Each event of a modifier is a press or a release in turn, and stays a pair: what was
        // pressed in a window of the program is told to nobody.
        void tellModifiers(bool held) {
            const bool isTold = held ? !ownWindowActive() && !recording.isOn() : modifiersTold;
            modifiersTold = held && isTold;
            if (!isTold) return;
            for (const auto code : {keyCodes::control, keyCodes::option, keyCodes::command})
                input.tellModifier(code);
        }

        Compositor& compositor;
        std::function<bool()> ownWindowActive;
        bool modifiersTold = false;
        Changes changes;
        wayland::KeyboardSeat keyboard;
        wayland::PointerSeat seat;
        CursorControl control;
        wayland::Hold hold;
        wayland::Pointer pointer;
        wayland::InputEvents input;
        HeldModifiers modifiers;
        Cursor cursor;
        Keyboard keys;
        wayland::KeyRecording recording;
        HotKeys hotKeys;
        wayland::Windows windows;
        Focus focus;
        wayland::IdleInhibitor idle;
    };

    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<Compositor> compositor;
    std::unique_ptr<wayland::Connection> connection;
    std::optional<wayland::Outputs> outputs;
    std::optional<Parts> parts;
};

} // namespace
} // namespace platform::sway

extern "C" __attribute__((visibility("default"))) void
openWaylandDesktop(platform::wayland::OpenedDesktop& opened, platform::Descriptors& descriptors,
                   platform::Log& log, std::function<void()> lost) {
    const char* const socket = std::getenv("SWAYSOCK");
    // A name that was left behind by a compositor that has gone is none.
    if (!socket || !platform::sway::Ipc::open(socket)) return;
    auto desktop = std::make_unique<platform::sway::SwayDesktop>(descriptors, log);
    opened.error = desktop->join(socket, std::move(lost));
    if (opened.error.empty()) opened.desktop = desktop.release();
}
