#include "bus/Stage.h"

#include <fstream>
#include <gmock/gmock.h>

// Every property, method, signal and error of the interface, on a running program.

namespace desktop {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

void appendText(sd_bus_message* question, const char* word) {
    sd_bus_message_append(question, "s", word);
}
BusStage::Arguments text(const char* word) {
    return [word](sd_bus_message* question) { appendText(question, word); };
}
BusStage::Arguments texts(const char* one, const char* other) {
    return [one, other](sd_bus_message* question) {
        sd_bus_message_append(question, "ss", one, other);
    };
}
BusStage::Arguments number(unsigned value) {
    return [value](sd_bus_message* question) { sd_bus_message_append(question, "u", value); };
}
BusStage::Arguments flagVariant(bool on) {
    return
        [on](sd_bus_message* question) { sd_bus_message_append(question, "v", "b", on ? 1 : 0); };
}

struct Members : BusStage, testing::Test {
    Members() {
        start();
        listen();
    }
    void expectError(const bus::Message& reply, const std::string& expected) {
        EXPECT_FALSE(reply);
        EXPECT_EQ(error, "com.tamberlo.Product1.Error." + expected);
        EXPECT_THAT(errorText, EndsWith(".")) << "a sentence";
    }
};

TEST_F(Members, ActiveIsReadWrittenAndAnnounced) {
    EXPECT_TRUE(isActive());
    ASSERT_TRUE(set("Active", flagVariant(false))) << errorText;
    EXPECT_TRUE(hearChange("Active"));
    EXPECT_FALSE(isActive());
    EXPECT_TRUE(nothingCoveredSoon());
    ASSERT_TRUE(set("Active", flagVariant(true)));
    EXPECT_TRUE(isActive()) << "what was asked for first is done first";
    EXPECT_TRUE(coveredSoon(1, 0));
    EXPECT_FALSE(set("Active", [](sd_bus_message* question) {
        sd_bus_message_append(question, "v", "s", "yes");
    }));
    EXPECT_EQ(error, "org.freedesktop.DBus.Error.InvalidArgs") << "of the standard interface";
    EXPECT_FALSE(set("Held", [](sd_bus_message* question) {
        sd_bus_message_append(question, "v", "s", "DUMMY1");
    }));
    EXPECT_EQ(error, "org.freedesktop.DBus.Error.PropertyReadOnly");
}

TEST_F(Members, ToggleSwitchesOverAndAnswersWithWhatItIsThen) {
    for (const int expected : {0, 1}) {
        const auto reply = call("Toggle");
        int is = -1;
        ASSERT_TRUE(reply && sd_bus_message_read(reply.get(), "b", &is) > 0) << errorText;
        EXPECT_EQ(is, expected);
        EXPECT_EQ(isActive(), expected != 0);
        EXPECT_TRUE(hearChange("Active"));
    }
}

TEST(MembersOnASingleMonitor, RefuseToSwitchOnAndOpenNoAlertThatTheCallerWouldWaitFor) {
    BusStage stage("1920x1080+0+0");
    stage.start({.active = false});
    EXPECT_FALSE(stage.set("Active", flagVariant(true)));
    EXPECT_EQ(stage.error, "com.tamberlo.Product1.Error.NotPossible");
    EXPECT_FALSE(stage.call("Toggle"));
    EXPECT_EQ(stage.error, "com.tamberlo.Product1.Error.NotPossible");
    EXPECT_THAT(stage.errorText, HasSubstr("one monitor only"));
    EXPECT_FALSE(stage.isActive());
    for (const char* word : {"on", "toggle"}) {
        const Answer answer = stage.command({word});
        EXPECT_EQ(answer.status, 1) << word;
        EXPECT_THAT(answer.errors, HasSubstr("one monitor only"));
    }
    EXPECT_TRUE(stage.program->running());
}

TEST_F(Members, HeldAndMonitorsFollowTheCursorAndCrossedTellsIt) {
    EXPECT_EQ(held(), "DUMMY0");
    ASSERT_TRUE(call("CrossTo", text("DUMMY1"))) << errorText;
    EXPECT_EQ(held(), "DUMMY1");
    EXPECT_TRUE(cursorIsOn(1));
    EXPECT_TRUE(hear("Crossed", [](sd_bus_message* signal) {
        const char *from = nullptr, *to = nullptr;
        return sd_bus_message_read(signal, "ss", &from, &to) > 0 && std::string(from) == "DUMMY0" &&
               std::string(to) == "DUMMY1";
    }));
    EXPECT_TRUE(hearChange("Held"));
    const auto value = get("Monitors");
    ASSERT_TRUE(value && sd_bus_message_enter_container(value.get(), 'a', "(s(iiii)dbbb)") > 0);
    std::vector<std::string> seen;
    const char* monitorName = nullptr;
    int x, y, width, height, primary, isHeld, dark;
    double scale = 0;
    while (sd_bus_message_read(value.get(), "(s(iiii)dbbb)", &monitorName, &x, &y, &width, &height,
                               &scale, &primary, &isHeld, &dark) > 0)
        seen.push_back(std::string(monitorName) + " " + std::to_string(x) + "," +
                       std::to_string(y) + " " + std::to_string(width) + "x" +
                       std::to_string(height) + (primary ? " primary" : "") +
                       (isHeld ? " held" : "") + (dark ? " dark" : ""));
    EXPECT_THAT(seen, testing::ElementsAre("DUMMY0 0,0 1920x1080 primary dark",
                                           "DUMMY1 1920,56 1280x1024 held"));
    expectError(call("CrossTo", text("DUMMY7")), "UnknownMonitor");
    expectError(call("CrossTo", text("")), "UnknownMonitor");
}

TEST_F(Members, FreeIsAnnouncedAtItsBeginningAndItsEndAndCountsDown) {
    EXPECT_EQ(freed(), 0U);
    ASSERT_TRUE(call("Free", number(50))) << errorText;
    EXPECT_TRUE(hearChange("Freed"));
    EXPECT_GT(freed(), 40U);
    EXPECT_LE(freed(), 50U);
    EXPECT_TRUE(isActive());
    EXPECT_TRUE(nothingCoveredSoon());
    ASSERT_TRUE(call("Free", number(1)));
    EXPECT_TRUE(hear("PropertiesChanged", [&](sd_bus_message*) { return freed() == 0; }));
    EXPECT_TRUE(coveredSoon(1, 0));
    ASSERT_TRUE(call("Free", number(0)));
    expectError(call("Free", number(86401)), "OutOfRange");
    ASSERT_TRUE(set("Active", flagVariant(false)));
    expectError(call("Free", number(5)), "NotPossible");
}

TEST_F(Members, ArgumentsOfAnotherTypeAreNamed) {
    for (const char* method : {"Free", "CrossTo", "SetSetting", "GetSetting", "ResetSetting"}) {
        SCOPED_TRACE(method);
        expectError(
            call(method,
                 [](sd_bus_message* question) { sd_bus_message_append(question, "d", 1.5); }),
            "WrongType");
    }
    expectError(call("Toggle", text("now")), "WrongType");
    EXPECT_FALSE(call("Explode"));
    EXPECT_EQ(error, "org.freedesktop.DBus.Error.UnknownMethod");
}

TEST_F(Members, SettingsAreListedReadSetAndPutBack) {
    const auto list = call("ListSettings");
    ASSERT_TRUE(list && sd_bus_message_enter_container(list.get(), 'a', "(ssssbs)") > 0);
    std::vector<std::string> names;
    const char *key, *readable, *kind, *value, *meaning;
    int isDefault = 0;
    while (sd_bus_message_read(list.get(), "(ssssbs)", &key, &readable, &kind, &value, &isDefault,
                               &meaning) > 0)
        names.emplace_back(readable);
    EXPECT_THAT(names, testing::IsSupersetOf({"push", "push-strength", "darkness", "shortcut"}));
    const auto valueOf = [&](const char* setting) {
        const auto reply = call("GetSetting", text(setting));
        const char* text = nullptr;
        return reply && sd_bus_message_read(reply.get(), "s", &text) > 0 ? std::string(text)
                                                                         : error;
    };
    EXPECT_EQ(valueOf("push"), "off");
    ASSERT_TRUE(call("SetSetting", texts("push", "on"))) << errorText;
    EXPECT_EQ(valueOf("VELOCITY_OPTION"), "on") << "by its key as well";
    EXPECT_TRUE(stores("<key>VELOCITY_OPTION</key>" + flag(true)));
    ASSERT_TRUE(call("ResetSetting", text("push")));
    EXPECT_EQ(valueOf("push"), "off");
    expectError(call("GetSetting", text("nonesuch")), "UnknownSetting");
    expectError(call("SetSetting", texts("nonesuch", "1")), "UnknownSetting");
    expectError(call("ResetSetting", text("nonesuch")), "UnknownSetting");
    expectError(call("SetSetting", texts("push", "perhaps")), "WrongType");
    expectError(call("SetSetting", texts("push-strength", "5000")), "OutOfRange");
    expectError(call("GetSetting", text("stay-hidden")), "NotOfThisProduct");
    expectError(call("SetSetting", texts("shortcut", "K")), "NotPossible");
}

TEST_F(Members, ShortcutIsWhatTheMenuWritesAndAnnounced) {
    ASSERT_TRUE(call("SetSetting", texts("shortcut", "Ctrl+Super+K"))) << errorText;
    EXPECT_TRUE(hearChange("Shortcut"));
    const auto value = get("Shortcut");
    const char* shown = nullptr;
    ASSERT_TRUE(value && sd_bus_message_read(value.get(), "s", &shown) > 0);
    EXPECT_THAT(shown, HasSubstr("K"));
}

std::string capability(BusStage& stage, const std::string& wanted) {
    const auto value = stage.get("Capabilities");
    if (!value || sd_bus_message_enter_container(value.get(), 'a', "(sbs)") <= 0) return "none";
    const char *id, *reason;
    int is = 0;
    while (sd_bus_message_read(value.get(), "(sbs)", &id, &is, &reason) > 0)
        if (id == wanted) return std::string(is ? "yes " : "no ") + reason;
    return "not there";
}

TEST_F(Members, CapabilitiesSayWhatTheDesktopAllowsAndWhyNot) {
    EXPECT_EQ(capability(*this, "hold"), "yes ");
    EXPECT_THAT(capability(*this, "darkness"), HasSubstr("compositor"));
    EXPECT_THAT(capability(*this, "tray"), HasSubstr("no tray"));
    desktop.startCompositor();
    EXPECT_TRUE(hearChange("Capabilities"));
    EXPECT_EQ(capability(*this, "darkness"), "yes ");
}

TEST_F(Members, CapabilitiesFollowATrayThatComesGoesAndComesBack) {
    for (int times = 0; times < 2; ++times) {
        const auto host = desktop.spawn("trayer");
        ASSERT_TRUE(hearChange("Capabilities")) << host->errors();
        EXPECT_EQ(capability(*this, "tray"), "yes ");
        host->end();
        ASSERT_TRUE(hearChange("Capabilities"));
        EXPECT_THAT(capability(*this, "tray"), HasSubstr("no tray"));
    }
}

TEST(MembersWithoutAHold, SayWhy) {
    BusStage stage;
    stage.start({.hold = false});
    EXPECT_THAT(capability(stage, "hold"), HasSubstr("--hold off"));
}

TEST_F(Members, VersionIsTheProducts) {
    const auto value = get("Version");
    const char* version = nullptr;
    ASSERT_TRUE(value && sd_bus_message_read(value.get(), "s", &version) > 0);
    EXPECT_STREQ(version, "1.0");
}

TEST_F(Members, ShowMenuOpensItAndTheBusIsAnsweredMeanwhile) {
    ASSERT_TRUE(call("ShowMenu"));
    EXPECT_TRUE(waitForMenus(1));
    EXPECT_TRUE(isActive());
}

TEST_F(Members, QuitEndsTheProgramAsItsMenuDoes) {
    ASSERT_TRUE(call("Quit"));
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(nothingCoveredSoon());
}

/// A tree of links to what was built, in which one program is a stand-in.
struct Doctored : BusStage, testing::Test {
    Doctored() {
        namespace fs = std::filesystem;
        fs::create_directories(bin());
        fs::copy_file(fs::path(programs()) / "palisor-tray", bin() / "palisor-tray");
        fs::create_symlink("palisor-tray", bin() / "palisor");
        fs::create_symlink(fs::path(programs()) / "x11-session.so", bin() / "x11-session.so");
        fs::create_directory_symlink(fs::path(programs()).parent_path() / "share",
                                     bin().parent_path() / "share");
        folder = bin();
        start();
    }
    std::filesystem::path bin() const { return desktop.home() / "tree/bin"; }
    void makeDoctor(const std::string& script) const {
        const auto path = bin() / "palisor-doctor";
        std::ofstream(path) << "#!/bin/sh\n" << script;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
};

TEST_F(Doctored, ReportIsWhatTheDoctorPrintsAndTheProgramGoesOnMeanwhile) {
    makeDoctor("read go < " + (bin() / "gate").string() +
               "\necho \"{\\\"asked\\\":\\\"$*\\\"}\"\nexit 1");
    ASSERT_EQ(mkfifo((bin() / "gate").c_str(), 0600), 0);
    sd_bus_message* made = nullptr;
    std::string report;
    const auto take = [](sd_bus_message* reply, void* into, sd_bus_error*) {
        const char* text = nullptr;
        *static_cast<std::string*>(into) =
            sd_bus_message_read(reply, "s", &text) > 0 ? text : "error";
        return 0;
    };
    ASSERT_GE(sd_bus_message_new_method_call(caller(), &made, identifier().c_str(),
                                             "/com/tamberlo/palisor", "com.tamberlo.Product1",
                                             "Report"),
              0);
    const bus::Message question(made);
    ASSERT_GE(sd_bus_call_async(caller(), nullptr, made, take, &report, 0), 0);
    EXPECT_TRUE(isActive()) << "it answers while the doctor works";
    EXPECT_EQ(report, "");
    std::ofstream(bin() / "gate") << "go\n";
    ASSERT_TRUE(waitUntil([&] { return !report.empty(); }, support::generous,
                          [&](auto) {
                              if (sd_bus_process(caller(), nullptr) == 0)
                                  sd_bus_wait(caller(), 100'000);
                          }));
    EXPECT_EQ(report, R"({"asked":"--json --product palisor"})");
}

TEST_F(Doctored, ReportIsAnErrorWithoutADoctorOrWithOneThatFails) {
    for (const bool there : {false, true}) {
        if (there) makeDoctor("exit 7");
        EXPECT_FALSE(call("Report"));
        EXPECT_EQ(error, "com.tamberlo.Product1.Error.NoReport");
        EXPECT_THAT(errorText, HasSubstr("palisor-doctor"));
    }
}

} // namespace
} // namespace desktop
