#include "platform/gnome/GnomeDesktop.h"

#include "platform/gnome/keys/HotKeys.h"
#include "platform/gnome/keys/KeyRecording.h"
#include "platform/gnome/keys/Keyboard.h"
#include "platform/gnome/overlay/Windows.h"
#include "platform/gnome/pointer/Cursor.h"
#include "platform/gnome/pointer/InputEvents.h"
#include "platform/wayland/keys/Focus.h"
#include "platform/wayland/pointer/PointerSeat.h"

#include <cstdlib>
#include <string_view>

namespace platform::gnome {

namespace {

/// The shell heeds what is asked of the session over the bus.
class NoWakeLock final : public WakeLock {
  public:
    bool keep(AssertionId, const std::string&) override { return false; }
    void release(AssertionId) override {}
    std::string_view missing() const override {
        return "GNOME is kept awake over the session bus alone";
    }
};

/// Waits for the shell's answer, for a second at most; empty where it does not tell.
std::string shellVersion() {
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) return {};
    const bus::Connection bus(opened);
    (void)sd_bus_set_method_call_timeout(opened, 1'000'000);
    char* text = nullptr;
    (void)sd_bus_get_property_string(opened, "org.gnome.Shell", "/org/gnome/Shell",
                                     "org.gnome.Shell", "ShellVersion", nullptr, &text);
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text ? text : "";
}

class GnomeDesktop final : public wayland::Desktop {
  public:
    GnomeDesktop(Descriptors& loop, Log& writer, std::unique_ptr<wayland::Connection> compositor)
        : descriptors(loop), log(writer), connection(std::move(compositor)), outputs(*connection) {}

    std::string compositorName() const override {
        const std::string version = shellVersion();
        return version.empty() ? "GNOME Shell" : "GNOME Shell " + version;
    }
    const platform::Displays& displays() const override { return outputs; }
    platform::Displays& displays() override { return outputs; }

    Services start(const Surroundings& given) override {
        holds = given.holds;
        setup = given.setup;
        isInstalled = given.isExtensionInstalled;
        parts.emplace(*this, given);
        return {parts->pointer, parts->cursor,  parts->input, parts->keys,
                parts->hotKeys, parts->windows, parts->focus, parts->wakeLock};
    }

    platform::Capabilities capabilities() const override {
        const std::string reason = missing();
        const bool isThere = reason.empty();
        platform::Capabilities all;
        // Newer shells may have changed what a part of the extension is made of.
        struct Part {
            const char *id, *name;
        };
        for (const auto& [id, name] :
             {Part{"hold", "hold"}, Part{"darkness", "veil"}, Part{"motion", "watch"},
              Part{"push", "push"}, Part{"hide", "cursor"}, Part{"modifiers", "watch"}}) {
            const bool can = parts->hand.can(name);
            all.push_back({id, can,
                           can || !isThere ? reason
                                           : "This release of GNOME Shell lacks what the "
                                             "extension does that with."});
        }
        if (!holds) all.front() = {"hold", false, "Switched off by --hold off."};
        if (all.back().available)
            all.back().reason = "GNOME Shell does not tell the left Control, Alt and Super keys "
                                "from the right ones: either side counts.";
        return all;
    }

    std::string missing() const override {
        // What mends it comes first: a banner shows no more than its first words.
        const std::string run = "Run \"" + setup + "\"";
        switch (parts->hand.presence()) {
        case Hand::Presence::here:
            return {};
        case Hand::Presence::notInstalled:
            if (isInstalled())
                return "Log out and in again: GNOME Shell looks for new extensions only at login, "
                       "and the one that holds the cursor is installed.";
            return run + ", then log out and in again: GNOME Shell does not have the extension "
                         "that holds the cursor.";
        case Hand::Presence::switchedOff:
            return run + ": the extension of GNOME Shell that holds the cursor is switched off.";
        case Hand::Presence::broken:
            return run + ", then log out and in again: the extension of GNOME Shell that holds the "
                         "cursor has failed.";
        case Hand::Presence::otherRelease:
            return run + ", then log out and in again: the extension that holds the cursor is "
                         "installed for another release of GNOME Shell.";
        }
        return {};
    }

    bool hasSwitch() const override {
        return parts && parts->hand.presence() == Hand::Presence::here;
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
        Parts(GnomeDesktop& own, const Surroundings& given)
            : ownWindowActive(given.ownWindowActive),
              keyboard(*own.connection),
              hand(own.descriptors, own.log, given.identifier, given.extension,
                   given.capabilitiesChanged),
              hold(hand, own.outputs, given.holds),
              pointer(hand, own.outputs, hold),
              input(hand, own.descriptors, own.outputs, pointer, hold, given.ownWindowActive),
              cursor(hand),
              recording(hand, given.later, [this](bool on) { input.withholdModifiers(on); }),
              keys(hand, own.log),
              hotKeys(hand, own.log, keyboard, recording, given.settings, given.later),
              windows(hand, own.outputs, own.log),
              connection(*own.connection) {
            if (given.darkWished)
                hand.onDark([tell = given.darkWished](bool wished) { tell(wished); });
            connection.onSeat([this](std::uint32_t capabilities) {
                keyboard.find((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
            });
        }
        ~Parts() { connection.onSeat({}); }
        Parts(const Parts&) = delete;
        Parts& operator=(const Parts&) = delete;

        std::function<bool()> ownWindowActive;
        wayland::KeyboardSeat keyboard;
        Hand hand;
        Hold hold;
        Pointer pointer;
        InputEvents input;
        Cursor cursor;
        KeyRecording recording;
        Keyboard keys;
        HotKeys hotKeys;
        Windows windows;
        wayland::Focus focus;
        NoWakeLock wakeLock;
        wayland::Connection& connection;
    };

    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<wayland::Connection> connection;
    wayland::Outputs outputs;
    std::optional<Parts> parts;
    std::string setup;
    std::function<bool()> isInstalled;
    bool holds = true;
};

} // namespace

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost) {
    const char* const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    const bool isNamed =
        desktop && std::string_view(desktop).find("GNOME") != std::string_view::npos;
    // At login the shell may be busy with itself for longer than one answer is waited for.
    wayland::Connection::Opened opened;
    for (int tries = isNamed ? 10 : 1; !opened.connection && tries > 0; --tries)
        opened = wayland::Connection::open(descriptors, log, lost, wayland::Connection::forOutputs);
    if (!opened.connection) return {nullptr, isNamed ? opened.error : ""};
    // No other compositor has this one.
    if (!opened.connection->has("gtk_shell1")) return {};
    return {std::make_unique<GnomeDesktop>(descriptors, log, std::move(opened.connection)), {}};
}

} // namespace platform::gnome
