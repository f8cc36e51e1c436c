#include "platform/kwin/KWinDesktop.h"

#include "platform/kwin/Release.h"
#include "platform/kwin/hiding/Cursor.h"
#include "platform/kwin/keys/HeldModifiers.h"
#include "platform/kwin/keys/HotKeys.h"
#include "platform/kwin/keys/Keyboard.h"
#include "platform/kwin/pointer/CursorControl.h"
#include "platform/kwin/pointer/DragPush.h"
#include "platform/kwin/pointer/ScreenLock.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/Focus.h"

namespace platform::kwin {

namespace {

class KWinDesktop final : public wayland::Desktop {
  public:
    KWinDesktop(std::unique_ptr<bus::Link> made, Descriptors& loop, Log& writer)
        : link(std::move(made)), descriptors(loop), log(writer) {}

    /// Whether it is the compositor, and not one that is a window of it. After `join`.
    bool isThere() const { return connection->has("kde_output_order_v1"); }

    /// An error as of `OpenedDesktop`.
    std::string join(std::function<void()> lost) {
        auto opened = wayland::Connection::open(descriptors, log, std::move(lost));
        if (!opened.connection) return opened.error;
        connection = std::move(opened.connection);
        outputs.emplace(*connection);
        link->start();
        return {};
    }

    std::string compositorName() const override {
        const std::string version = versionOnBus(*link);
        return version.empty() ? "KWin" : "KWin " + version;
    }
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
        if (!holds) hold.reason = "Switched off by --hold off.";
        const bool tellsKeys = parts && parts->modifiers.canTell();
        return {
            std::move(hold),
            {"darkness", true, {}},
            {"modifiers", tellsKeys,
             tellsKeys ? "" : "This KWin tells of held keys only where the program is installed."},
            {"edges", true,
             "Along the sides that are armed two pixels take no clicks, and while a button is "
             "held nothing is felt there."},
            {"hide", true,
             "KWin hides the cursor some whole seconds after it has come to rest, and over a hot "
             "border at once; it shows it when it is moved, also where it is to stay hidden."},
            {"workspaces", true, {}},
            {"pause", false, "KWin lets the hand move the cursor right after it was put."},
            {"awake", connection->idle() != nullptr,
             connection->idle() ? "" : "The compositor cannot be kept from going idle."},
            {"place", true, {}}};
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
        Parts(KWinDesktop& own, const Surroundings& given)
            : script(*own.link, own.descriptors, own.log,
                     {given.data + "/kwin/session.js", given.folder, "hold"}),
              keyScript(*own.link, own.descriptors, own.log,
                        {given.data + "/kwin/session.js", given.folder, "keys", false}),
              emulated(*own.link, own.descriptors, own.log),
              control(script, emulated),
              lock(*own.link, [this](bool isLocked) { control.setLocked(isLocked); }),
              shared(*own.connection, *own.outputs, control, own.descriptors, own.log, given),
              modifiers(*own.connection, *own.outputs, shared.keyboard, own.descriptors,
                        [this](bool held) { shared.tellModifiers(held); }),
              effect(script, *own.link, own.log, given.folder),
              cursor(shared.seat, effect, own.descriptors),
              keys(script, own.log),
              hotKeys(keyScript, *own.link, own.log, shared.keyboard, shared.recording,
                      given.settings, given.later, given.identifier),
              drag(script, emulated, shared, own.descriptors) {
            script.onLoad([this] {
                control.again();
                drag.again();
                effect.again();
                tellPlaces();
            });
            script.onTold("place", [this](const JsonValue::List& words) {
                const auto place = numbersOf(words);
                if (place.size() == 2) shared.input.tellPlace({place[0], place[1]});
            });
            shared.edges.leaveByMotionAlone();
            shared.input.onWatch([this](const PointerWatch& wanted) {
                drag.setCrossing(wanted.crossing);
                if (std::exchange(areTold, wanted.motion) != wanted.motion) tellPlaces();
            });
        }

        /// At the pace of a display.
        void tellPlaces() { script.run("places", {areTold ? 16.0 : 0.0}); }

        Script script, keyScript;
        EmulatedPointer emulated;
        CursorControl control;
        ScreenLock lock;
        wayland::LayerServices shared;
        HeldModifiers modifiers;
        HidingEffect effect;
        Cursor cursor;
        Keyboard keys;
        HotKeys hotKeys;
        wayland::Focus focus;
        DragPush drag;
        bool areTold = false; ///< the cursor's places
    };

    std::unique_ptr<bus::Link> link;
    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<wayland::Connection> connection;
    std::optional<wayland::Outputs> outputs;
    std::optional<Parts> parts;
    bool holds = true;
};

} // namespace

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()> lost) {
    if (!isKWin(descriptors, log)) return {};
    auto link = std::make_unique<bus::Link>(descriptors, log);
    if (link->wait() != bus::Link::State::up) return {};
    const Release release = releaseOnBus(*link);
    if (release == Release::none) return {};
    if (release == Release::older) return {nullptr, tooOld};
    auto desktop = std::make_unique<KWinDesktop>(std::move(link), descriptors, log);
    std::string error = desktop->join(std::move(lost));
    if (!error.empty()) return {nullptr, std::move(error)};
    if (!desktop->isThere()) return {};
    return {std::move(desktop), {}};
}

} // namespace platform::kwin
