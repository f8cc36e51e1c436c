#include "platform/kwin/KWinDesktop.h"

#include "platform/kwin/Release.h"
#include "platform/kwin/keys/HeldModifiers.h"
#include "platform/kwin/keys/HotKeys.h"
#include "platform/kwin/keys/Keyboard.h"
#include "platform/kwin/pointer/CursorControl.h"
#include "platform/session/CountedCursor.h"
#include "platform/wayland/LayerServices.h"

namespace platform::kwin {

namespace {

/// The compositor hides no cursor for another program.
class Cursor final : public session::CountedCursor {
    void setHidden(bool) override {}
};

std::optional<Point> pointOf(const JsonValue::List& words) {
    if (words.size() != 2) return std::nullopt;
    const auto* x = std::get_if<std::int64_t>(&words[0].held);
    const auto* y = std::get_if<std::int64_t>(&words[1].held);
    if (!x || !y) return std::nullopt;
    return Point{static_cast<double>(*x), static_cast<double>(*y)};
}

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
        hold.reason =
            holds ? "A push does not cross while a button is held." : "Switched off by --hold off.";
        const bool tellsKeys = parts && parts->modifiers.canTell();
        return {
            std::move(hold),
            {"darkness", true, {}},
            {"modifiers", tellsKeys,
             tellsKeys ? "" : "This KWin tells of held keys only where the program is installed."},
            {"edges", true, "What happens at the sides of the desktop was not tried in KWin yet."},
            {"hide", false, "KWin hides the cursor for no other program."},
            {"place", false, "KWin is not asked where the cursor is, so nothing can follow it."}};
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
                        {given.data + "/kwin/session.js", given.folder, "keys"}),
              emulated(*own.link, own.descriptors, own.log),
              control(script, emulated),
              shared(*own.connection, *own.outputs, control, own.descriptors, own.log, given),
              modifiers(*own.connection, *own.outputs, shared.keyboard, own.descriptors,
                        [this](bool held) { shared.tellModifiers(held); }),
              keys(script, own.log),
              hotKeys(keyScript, shared.keyboard, shared.recording, given.settings, given.later,
                      given.identifier) {
            script.onLoad([this] { control.again(); });
            script.onTold("place", [this](const JsonValue::List& words) {
                if (const auto place = pointOf(words)) shared.input.tellPlace(*place);
            });
        }

        Script script, keyScript;
        EmulatedPointer emulated;
        CursorControl control;
        wayland::LayerServices shared;
        HeldModifiers modifiers;
        Cursor cursor;
        Keyboard keys;
        HotKeys hotKeys;
        Focus focus;
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
    if (release == Release::older) return {nullptr, refusal};
    auto desktop = std::make_unique<KWinDesktop>(std::move(link), descriptors, log);
    std::string error = desktop->join(std::move(lost));
    if (!error.empty()) return {nullptr, std::move(error)};
    if (!desktop->isThere()) return {};
    return {std::move(desktop), {}};
}

} // namespace platform::kwin
