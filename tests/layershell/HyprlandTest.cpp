#include "platform/layershell/hyprland/Bindings.h"
#include "testing/TempFolder.h"

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <map>
#include <regex>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

// What Hyprland is told and tells, without a Hyprland.

namespace hyprlandtests {
namespace {

using platform::Shortcut;
using platform::layershell::hyprland::Bindings;
using platform::layershell::hyprland::boundIn;
using platform::layershell::hyprland::combinationOf;
using platform::layershell::hyprland::Ipc;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Shortcut superF9{101, Shortcut::command};
constexpr Shortcut controlK{40, Shortcut::control | Shortcut::command};

int listenAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(::bind(made, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(made, 8), 0);
    return made;
}

/// A run loop that turns by hand, and a compositor that answers what it is told to.
struct Compositor : platform::Descriptors {
    explicit Compositor(bool lua = true)
        : isLua(lua),
          requests(listenAt(folder.path(".socket.sock"))),
          events(listenAt(folder.path(".socket2.sock"))) {}
    ~Compositor() override {
        for (const int socket : {requests, events, listener})
            ::close(socket);
    }
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    void watchReadable(int descriptor, std::function<void()> ready) override {
        handlers[descriptor] = std::move(ready);
    }
    void unwatch(int descriptor) override { handlers.erase(descriptor); }
    void turn() {
        for (const auto& [descriptor, ready] : std::map(handlers))
            if (handlers.contains(descriptor)) ready();
    }
    std::unique_ptr<Bindings> open() {
        auto made = Bindings::open(folder.path(""), "palisor", *this,
                                   [this](const std::string& why) { refusals.push_back(why); });
        listener = ::accept(events, nullptr, nullptr);
        return made;
    }

    /// Takes the next request, which has been made, and answers it.
    std::string answer(const std::string& text) {
        const std::string asked = serve(text);
        turn();
        return asked;
    }
    std::string serve(const std::string& text) const {
        const int client = ::accept(requests, nullptr, nullptr);
        char request[4096];
        const ssize_t got = ::recv(client, request, sizeof request, 0);
        EXPECT_EQ(::send(client, text.data(), text.size(), MSG_NOSIGNAL), std::ssize(text));
        ::close(client);
        return {request, static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
    }
    /// Answers which grammar it has, what is bound, and what comes then.
    std::vector<std::string> begin(const std::string& bound, int count) {
        EXPECT_EQ(answer(isLua ? "ok" : "eval is only supported with the lua config manager"),
                  "eval return");
        return look(bound, count);
    }
    std::vector<std::string> look(const std::string& bound, int count) {
        EXPECT_EQ(answer(bound), "j/binds");
        std::vector<std::string> told;
        for (int i = 0; i < count; ++i)
            told.push_back(answer("ok"));
        return told;
    }
    void tell(const std::string& event) {
        EXPECT_EQ(::send(listener, event.data(), event.size(), MSG_NOSIGNAL), std::ssize(event));
        turn();
    }
    bool isLua;
    testing_support::TempFolder folder;
    std::map<int, std::function<void()>> handlers;
    int requests, events, listener = -1;
    std::vector<std::string> refusals;
};

std::string bind(const std::string& keys, const std::string& event, const std::string& more = "") {
    return "eval hl.bind(\"" + std::regex_replace(keys, std::regex(" "), " + ") +
           "\", hl.dsp.event(\"" + event + "\"), {description = \"palisor by " + keys + "\"" +
           more + "})";
}

TEST(HyprlandKeys, AreBoundInTheGrammarOfTheirConfiguration) {
    Compositor lua;
    const auto inLua = lua.open();
    inLua->hear({{superF9, [] {}, true}, {controlK, [] {}, false}});
    EXPECT_THAT(lua.begin("[]", 2), ElementsAre(bind("SUPER code:75", "palisor-0"),
                                                bind("CTRL SUPER code:45", "palisor-1")));
    Compositor older(false);
    const auto inWords = older.open();
    inWords->hear({{superF9, [] {}, true}, {controlK, [] {}, false}});
    EXPECT_THAT(
        older.begin("[]", 2),
        ElementsAre(
            "keyword bindd SUPER, code:75, palisor by SUPER code:75, event, palisor-0",
            "keyword bindd CTRL SUPER, code:45, palisor by CTRL SUPER code:45, event, palisor-1"));
    EXPECT_THAT(lua.refusals, IsEmpty());
    EXPECT_THAT(older.refusals, IsEmpty());
}

TEST(HyprlandKeys, AreHeardByTheirNumber) {
    Compositor hyprland;
    const auto bindings = hyprland.open();
    std::string heard;
    bindings->hear({{superF9, [&] { heard += "a"; }}, {controlK, [&] { heard += "b"; }}});
    bindings->hearHeldModifiers([&] { heard += "m"; });
    EXPECT_THAT(hyprland.begin("[]", 5),
                ElementsAre(bind("SUPER code:75", "palisor-0"),
                            bind("CTRL SUPER code:45", "palisor-1"),
                            bind("ALT SUPER Control_L", "palisor-2", ", non_consuming = true"),
                            bind("CTRL SUPER Alt_L", "palisor-3", ", non_consuming = true"),
                            bind("CTRL ALT Super_L", "palisor-4", ", non_consuming = true")));
    hyprland.tell("custom>>palisor-1\nwindowtitle>>x\ncustom>>palisor-");
    hyprland.tell("4\ncustom>>palisor-5\ncustom>>other-0\ncustom>>palisor-0\nnonsense\n");
    EXPECT_EQ(heard, "bma");
}

TEST(HyprlandKeys, AreLeftToTheUserWhereTheyAreBound) {
    for (const char* users : {R"([{"modmask":64,"key":"f9","keycode":0,"description":""}])",
                              R"([{"modmask":64,"key":"","keycode":75,"description":""}])"}) {
        Compositor hyprland;
        const auto bindings = hyprland.open();
        bindings->hear({{superF9, [] {}, true}, {controlK, [] {}, true}});
        EXPECT_THAT(hyprland.begin(users, 1), ElementsAre(bind("CTRL SUPER code:45", "palisor-0")));
        EXPECT_THAT(hyprland.refusals, ElementsAre("it is bound to something else")) << users;
    }
}

TEST(HyprlandKeys, ThatAKilledProgramHasLeftGoFirst) {
    Compositor hyprland;
    const auto bindings = hyprland.open();
    bindings->hear({{superF9, [] {}, true}});
    EXPECT_THAT(
        hyprland.begin(
            R"([{"modmask":64,"key":"","keycode":0,"description":"palisor by SUPER code:75"}])", 2),
        ElementsAre(R"(eval hl.unbind("SUPER + code:75"))", bind("SUPER code:75", "palisor-0")));
    EXPECT_THAT(hyprland.refusals, IsEmpty());
}

TEST(HyprlandKeys, GoWhenOthersAreWantedAndComeAgainAfterAReload) {
    Compositor hyprland;
    const auto bindings = hyprland.open();
    bindings->hear({{superF9, [] {}, true}});
    hyprland.begin("[]", 1);
    bindings->hear({{controlK, [] {}, true}});
    const char* const ours = R"([{"description":"palisor by SUPER code:75"}])";
    EXPECT_THAT(hyprland.look(ours, 2), ElementsAre(R"(eval hl.unbind("SUPER + code:75"))",
                                                    bind("CTRL SUPER code:45", "palisor-0")));
    hyprland.tell("configreloaded>>\n");
    EXPECT_THAT(hyprland.look("[]", 1), ElementsAre(bind("CTRL SUPER code:45", "palisor-0")));
}

TEST(HyprlandKeys, GoAtTheEnd) {
    Compositor hyprland;
    auto bindings = hyprland.open();
    bindings->hear({{superF9, [] {}, true}, {controlK, [] {}, false}});
    hyprland.begin("[]", 2);
    std::thread end([&] { bindings.reset(); });
    EXPECT_EQ(hyprland.serve("ok"),
              R"(eval hl.unbind("SUPER + code:75") hl.unbind("CTRL + SUPER + code:45"))");
    end.join();
    EXPECT_THAT(hyprland.handlers, IsEmpty());
}

TEST(HyprlandKeys, ThatItRefusesAreToldOf) {
    Compositor hyprland;
    const auto bindings = hyprland.open();
    bindings->hear({{superF9, [] {}, true}});
    hyprland.begin("[]", 0);
    hyprland.answer("error: no such key");
    EXPECT_THAT(hyprland.refusals, ElementsAre("error: no such key"));
}

TEST(HyprlandAnswers, ThatAreCutNestedOrHugeAreNone) {
    EXPECT_THAT(boundIn(R"([{"modmask":64,"key":"F9")"), IsEmpty());
    EXPECT_THAT(boundIn(std::string(200, '[') + std::string(200, ']')), IsEmpty());
    EXPECT_THAT(boundIn(R"({"modmask":64})"), IsEmpty());
    const auto odd = boundIn(R"([{"modmask":"64","key":7,"keycode":[]},3])");
    ASSERT_EQ(odd.size(), 2U);
    EXPECT_FALSE(odd[0].isOf(combinationOf(superF9).value()));

    Compositor hyprland;
    const auto bindings = hyprland.open();
    bindings->hear({{superF9, [] {}, true}});
    EXPECT_EQ(hyprland.answer("ok"), "eval return");
    const int client = ::accept(hyprland.requests, nullptr, nullptr);
    const std::string part(1U << 16, ' ');
    for (std::size_t sent = 0; sent <= Ipc::longest; sent += part.size()) {
        if (::send(client, part.data(), part.size(), MSG_NOSIGNAL) < 0) break;
        hyprland.turn();
    }
    ::close(client);
    hyprland.turn();
    EXPECT_EQ(hyprland.answer("ok"), bind("SUPER code:75", "palisor-0")) << "as if none were";
}

TEST(HyprlandEvents, ThatNeverEndAreHeardNoLonger) {
    Compositor hyprland;
    const auto bindings = hyprland.open();
    const std::string part(1U << 16, 'x');
    for (std::size_t sent = 0; sent <= Ipc::longest; sent += part.size())
        hyprland.tell(part);
    EXPECT_EQ(hyprland.handlers.size(), 1U) << "the question alone";
}

TEST(HyprlandKeys, AreBoundByNobodyWhereItIsNotThere) {
    Compositor hyprland;
    EXPECT_FALSE(Bindings::open(hyprland.folder.path("none"), "palisor", hyprland, {}));
    EXPECT_FALSE(Bindings::open("", "palisor", hyprland, {}));
}

} // namespace
} // namespace hyprlandtests
