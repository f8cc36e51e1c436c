#include "bus/Stage.h"
#include "platform/json/Parser.h"
#include "program/client/Commands.h"

#include <fstream>
#include <gmock/gmock.h>

// What people and scripts type, from outside.

namespace desktop {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using List = platform::JsonValue::List;

platform::JsonValue json(const std::string& text) {
    return platform::json::read(text, 10);
}

/// Done, without a word.
void expectSilent(const Answer& answer) {
    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.output + answer.errors, "");
}

void expectRefused(const Answer& answer, int status, const std::string& part) {
    EXPECT_EQ(answer.status, status) << answer.errors;
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors, AllOf(HasSubstr(part), EndsWith("\n")));
    EXPECT_EQ(std::ranges::count(answer.errors, '\n'), 1) << answer.errors;
}

struct Commands : BusStage, testing::Test {};

TEST_F(Commands, OnOffAndToggleSwitchWithoutAWord) {
    start();
    expectSilent(command({"off"}));
    EXPECT_FALSE(isActive());
    expectSilent(command({"off"}));
    EXPECT_FALSE(isActive());
    expectSilent(command({"on"}));
    EXPECT_TRUE(isActive());
    expectSilent(command({"toggle"}));
    EXPECT_FALSE(isActive());
    expectSilent(command({"toggle", "--product", "Palisor"}));
    EXPECT_TRUE(isActive());
}

TEST_F(Commands, StatusPrintsTheStateForPeopleAndForPrograms) {
    start();
    const Answer plain = command({"status"});
    EXPECT_EQ(plain.status, 0) << plain.errors;
    EXPECT_THAT(plain.output,
                AllOf(StartsWith("active yes\nheld DUMMY0\nfreed no\n"),
                      HasSubstr("\nmonitor DUMMY0 1920x1080+0+0, scale 1, primary, held\n"),
                      HasSubstr("\nmonitor DUMMY1 1280x1024+1920+56, scale 1, dark\n"),
                      HasSubstr("\ncan hold: yes\n"), HasSubstr("\nversion 1.0\n")));
    const auto parsed = json(command({"status", "--json"}).output);
    EXPECT_EQ(*parsed.member("active"), platform::JsonValue{true});
    EXPECT_EQ(*parsed.member("held"), platform::JsonValue{std::string("DUMMY0")});
    EXPECT_EQ(std::get<List>(parsed.member("monitors")->held).size(), 2U);
    EXPECT_EQ(*parsed.member("version"), platform::JsonValue{std::string("1.0")});
}

TEST_F(Commands, FreeLeavesTheCursorFreeForAsLongAsIsSaid) {
    start();
    expectSilent(command({"free", "90"}));
    EXPECT_GT(freed(), 60U);
    expectSilent(command({"free", "0"}));
    EXPECT_EQ(freed(), 0U);
    expectSilent(command({"free"}));
    EXPECT_LE(freed(), client::usualFreeing);
    EXPECT_GT(freed(), 10U) << "thirty, less what a busy machine takes";
    EXPECT_THAT(command({"status"}).output, HasSubstr(" s\n"));
    for (const char* wrong : {"soon", "90000", "1.5", "-"})
        expectRefused(command({"free", wrong}), 2, "whole seconds");
}

TEST_F(Commands, CrossPutsTheCursorOntoAMonitorAndNamesTheNearestForAWrongOne) {
    start();
    expectSilent(command({"cross", "DUMMY1"}));
    EXPECT_TRUE(cursorEndsOn(1));
    EXPECT_EQ(held(), "DUMMY1");
    expectRefused(command({"cross", "dumy0"}), 1, "did you mean \"DUMMY0\"?");
    EXPECT_EQ(held(), "DUMMY1");
}

TEST_F(Commands, MenuOpensTheMenuAndQuitEndsTheProgram) {
    start();
    expectSilent(command({"menu"}));
    EXPECT_TRUE(waitForMenus(1));
    expectSilent(command({"quit"}));
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(Commands, SettingsAreListedReadSetAndPutBack) {
    start();
    EXPECT_THAT(command({"settings"}).output, HasSubstr("\npush = off"));
    EXPECT_EQ(command({"settings", "list"}).output, command({"settings"}).output);
    expectSilent(command({"settings", "set", "push", "on"}));
    EXPECT_EQ(command({"settings", "get", "push"}).output, "on\n");
    EXPECT_THAT(command({"settings"}).output, HasSubstr("(changed)"));
    expectSilent(command({"settings", "reset", "push"}));
    EXPECT_EQ(json(command({"settings", "get", "push", "--json"}).output),
              platform::JsonValue{std::string("off")});
    const auto list = json(command({"settings", "--json"}).output);
    EXPECT_TRUE(std::get<List>(list.held).front().member("meaning"));
    expectRefused(command({"settings", "get", "pusch"}), 1, "did you mean \"push\"?");
    expectRefused(command({"settings", "set", "push", "perhaps"}), 1, "takes on or off");
    expectRefused(command({"settings", "set", "push-strength", "5000"}), 1, "range from 1 to 100");
    expectRefused(command({"settings", "set", "push-strength", "5000"}), 1, "range");
}

TEST_F(Commands, WatchPrintsTheWholeStateAndThenALineAChangeUntilTheEnd) {
    start();
    const auto plain = desktop.spawn(programs() + "/palisor", {"watch"});
    const auto forPrograms = desktop.spawn(programs() + "/palisor", {"watch", "--json"});
    ASSERT_TRUE(plain->waitForText("version 1.0\n")) << plain->errors();
    ASSERT_TRUE(forPrograms->waitForText("}\n"));
    const std::string before = plain->output();
    EXPECT_EQ(before, command({"status"}).output);
    EXPECT_EQ(forPrograms->output(), command({"status", "--json"}).output);
    ASSERT_TRUE(call("CrossTo", [](sd_bus_message* question) {
        sd_bus_message_append(question, "s", "DUMMY1");
    })) << errorText;
    EXPECT_TRUE(plain->waitForText("crossed DUMMY0 DUMMY1\n"));
    EXPECT_TRUE(plain->waitForText("held DUMMY1\n"));
    EXPECT_TRUE(
        forPrograms->waitForText("{\"crossed\":{\"from\":\"DUMMY0\",\"to\":\"DUMMY1\"}}\n"));
    expectSilent(command({"off"}));
    EXPECT_TRUE(plain->waitForText("active no\n"));
    program->end();
    EXPECT_EQ(plain->wait(), 0);
    EXPECT_EQ(forPrograms->wait(), 0);
    std::istringstream lines(forPrograms->output());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_NO_THROW((void)json(line)) << line;
    EXPECT_GT(count, 3);
}

TEST_F(Commands, WhereNoProgramRunsSayItInOneLineAndStartNone) {
    startBusWithServices();
    for (const auto& words : std::vector<std::vector<std::string>>{{"off"},
                                                                   {"status"},
                                                                   {"free"},
                                                                   {"cross", "DUMMY0"},
                                                                   {"menu"},
                                                                   {"settings"},
                                                                   {"watch"},
                                                                   {"quit"}}) {
        SCOPED_TRACE(words.front());
        expectRefused(command(words), 3, "palisor does not run");
    }
    EXPECT_FALSE(desktop.isOnTheBus("com.tamberlo.palisor"));
}

TEST_F(Commands, OnAndToggleStartTheProgramAsOneOfTheSession) {
    startBusWithServices();
    for (const char* word : {"on", "toggle"}) {
        SCOPED_TRACE(word);
        std::ofstream(settingsFile()) << propertyList([] {
            Entries entries = pastTheFirstStart();
            entries["ATTIVO"] = flag(false);
            return entries;
        }());
        expectSilent(command({word}));
        EXPECT_TRUE(isActive());
        expectSilent(command({"quit"}));
        EXPECT_TRUE(desktop.isOnTheBusSoon("com.tamberlo.palisor", false));
    }
}

TEST_F(Commands, OnStartsTheProgramRightAfterQuitHasEndedIt) {
    startBusWithServices();
    std::ofstream(settingsFile()) << propertyList(pastTheFirstStart());
    for (int i = 0; i < 5; ++i) {
        expectSilent(command({"on"}));
        EXPECT_TRUE(isActive());
        expectSilent(command({"quit"}));
        EXPECT_FALSE(desktop.isOnTheBus(identifier()));
    }
}

TEST_F(Commands, OfASiblingStartAndAskTheSibling) {
    startBusWithServices();
    const Entries quiet = pastTheFirstStart();
    std::ofstream(desktop.configFolder() / "com.tamberlo.orbisant.plist") << propertyList(quiet);
    const Answer answer = command({"on"}, "orbisant");
    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_TRUE(desktop.isOnTheBus("com.tamberlo.orbisant"));
    EXPECT_FALSE(desktop.isOnTheBus("com.tamberlo.palisor"));
    EXPECT_EQ(command({"--product", "orbisant", "status"}).status, 0);
    expectRefused(command({"status"}), 3, "palisor does not run");
}

TEST_F(Commands, WithoutAServiceFileOnSaysWhatIsMissing) {
    desktop.setVariable("XDG_DATA_DIRS", "/nonexistent");
    desktop.startBus();
    expectRefused(command({"on"}), 3, "com.tamberlo.palisor.service");
}

TEST_F(Commands, GiveUpAfterTwoSecondsOnAProgramOrABusThatIsStopped) {
    start();
    for (const bool theBus : {false, true}) {
        SCOPED_TRACE(theBus ? "the bus" : "the program");
        const support::Stopped stopped(theBus ? desktop.busProcess() : program->pid());
        const auto before = support::Clock::now();
        expectRefused(command({"status"}), 4, "does not answer");
        const auto took = support::Clock::now() - before;
        EXPECT_GE(took, std::chrono::milliseconds(1900));
        EXPECT_LT(took, std::chrono::seconds(6)) << "two, and what a busy machine adds";
        EXPECT_TRUE(stopped.stillIs());
    }
}

TEST_F(Commands, WithoutABusSayThatThereIsNone) {
    desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    for (const char* word : {"status", "on", "off"})
        expectRefused(command({word}), 4, "no session bus");
}

TEST_F(Commands, OfAnotherVersionThatKnowsNoneOfThisSaySo) {
    desktop.setVariable("NAME", "com.tamberlo.palisor");
    desktop.setVariable("DEED", "");
    const auto other = desktop.spawn(STAND_IN, {});
    ASSERT_TRUE(desktop.isOnTheBusSoon("com.tamberlo.palisor"));
    for (const char* word : {"status", "off", "toggle"})
        expectRefused(command({word}), 5, "another version");
}

TEST_F(Commands, OfAnotherVersionThatKnowsThemSaySoAndGoOn) {
    namespace fs = std::filesystem;
    const fs::path tree = desktop.home() / "tree";
    fs::create_directories(tree / "bin");
    fs::create_directories(tree / "share/palisor/products/palisor");
    fs::copy_file(fs::path(programs()) / "palisor-tray", tree / "bin/palisor-tray");
    fs::create_symlink("palisor-tray", tree / "bin/palisor");
    fs::create_symlink(fs::path(programs()) / "x11-session.so", tree / "bin/x11-session.so");
    const fs::path from = fs::path(PRODUCTS_FOLDER) / "palisor";
    for (const auto& file : fs::directory_iterator(from))
        fs::copy(file, tree / "share/palisor/products/palisor" / file.path().filename());
    std::ifstream original(from / "Info.plist");
    std::string text{std::istreambuf_iterator<char>(original), {}};
    const auto at = text.find("<string>1.0</string>");
    ASSERT_NE(at, text.npos);
    std::ofstream(tree / "share/palisor/products/palisor/Info.plist")
        << text.replace(at, 20, "<string>0.9</string>");
    fs::create_directory_symlink(fs::path(programs()).parent_path() / "share/palisor/images",
                                 tree / "share/palisor/images");
    folder = tree / "bin";
    start();
    const Answer answer = command({"off"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("version 0.9"), HasSubstr("this command of 1.0")));
    EXPECT_FALSE(isActive());
}

TEST_F(Commands, NeedNoTerminal) {
    start();
    const auto script = desktop.spawn(
        "setsid", {"-w", "sh", "-c", programs() + "/palisor status --json </dev/null | cat"});
    EXPECT_EQ(script->wait(), 0);
    EXPECT_TRUE(json(script->output()).member("active")) << script->errors();
}

TEST_F(Commands, HelpAndAWrongWordNeedNeitherAProgramNorABus) {
    desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    EXPECT_THAT(command({"--help"}).output, StartsWith("Usage: palisor "));
    EXPECT_THAT(command({"on", "-h"}, "orbisant").output, StartsWith("Usage: orbisant "));
    expectRefused(command({"onn"}), 2, "did you mean \"on\"?");
}

TEST_F(Commands, DoctorRunsTheOneBesideThemForTheProduct) {
    namespace fs = std::filesystem;
    const fs::path bin = desktop.home() / "tree/bin";
    fs::create_directories(bin);
    fs::copy_file(fs::path(programs()) / "palisor", bin / "palisor");
    const auto doctor = [&](const std::vector<std::string>& words) {
        const auto child = desktop.spawn(bin / "palisor", words);
        const auto status = child->wait();
        return std::to_string(*status) + " " + child->output() + child->errors();
    };
    EXPECT_THAT(doctor({"doctor"}), AllOf(StartsWith("1 "), HasSubstr("cannot be started")));
    std::ofstream(bin / "palisor-doctor") << "#!/bin/sh\necho \"$@\"\nexit 6\n";
    fs::permissions(bin / "palisor-doctor", fs::perms::owner_all);
    EXPECT_EQ(doctor({"doctor"}), "6 --product palisor\n");
    EXPECT_EQ(doctor({"--product", "orbisant", "doctor", "--json", "--rescue"}),
              "6 --product orbisant --json --rescue\n");
}

} // namespace
} // namespace desktop
