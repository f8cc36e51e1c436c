#include "Run.h"
#include "platform/linux/login/AutostartItems.h"
#include "testing/KeptLog.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// What the doctor mends that a dead or stuck program has left.

namespace desktop {
namespace {

namespace fs = std::filesystem;
using support::ChildProcess;

constexpr const char* nothing = "Nothing to rescue: nothing was left behind\n";

struct Rescue : testing::Test {
    Visit rescue() const {
        return visit(product.desktop.environment(), {"--product", "palisor", "--rescue"});
    }

    void startDark() {
        bright = product.eye.gamma("DUMMY1");
        product.start();
        ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != bright; }));
    }
    bool isBrightSoon() {
        return waitUntil([&] { return product.eye.gamma("DUMMY1") == bright; });
    }
    fs::path lock() const {
        return product.desktop.runtimeFolder() / "palisor" /
               (product.identifier() + product.desktop.display() + ".lock");
    }

    fs::path entryFile() const {
        return product.desktop.configFolder() / "autostart" /
               (product.identifier() + "Helper.desktop");
    }
    /// As a product that was installed elsewhere has written it.
    void writeEntry() const {
        testing_support::KeptLog log;
        platform::linux::AutostartItems items(
            product.desktop.configFolder() / "autostart",
            {.identifier = product.identifier(),
             .name = "Palisor",
             .comment = "",
             .icon = "",
             .helper = {"/no/such/folder/palisor-helper", "--product", "palisor"}},
            log);
        items.setEnabled(product.identifier() + "Helper", true);
        ASSERT_TRUE(fs::exists(entryFile()));
    }
    std::string entry() const {
        std::ifstream file(entryFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }

    Product product;
    support::GammaRamp bright;
};

TEST_F(Rescue, HasNothingToDoWhereNothingWasLeft) {
    const Visit seen = rescue();
    EXPECT_EQ(seen.said, nothing);
    EXPECT_EQ(seen.status, 0);
    product.start();
    EXPECT_EQ(product.program->end(), 0);
    EXPECT_EQ(rescue().said, nothing) << "an orderly end leaves nothing";
    const testing_support::TempFolder folder;
    EXPECT_EQ(visit({{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}},
                    {"--product", "palisor", "--rescue"})
                  .said,
              nothing)
        << "without a display and a bus";
}

TEST_F(Rescue, PutsTheColoursBackThatAKilledProgramAndItsGuardLeftDark) {
    startDark();
    const auto guards = support::childrenOf(product.program->pid(), "gamma-guard");
    ASSERT_EQ(guards.size(), 1U);
    product.program->signal(SIGSTOP);
    ASSERT_EQ(::kill(guards.front(), SIGKILL), 0);
    product.program->signal(SIGKILL);
    ASSERT_EQ(product.program->wait(), -SIGKILL);
    ASSERT_NE(product.eye.gamma("DUMMY1"), bright);

    EXPECT_TRUE(holds(visit(product.desktop.environment()).of("colours"), "TROUBLE, "));
    product.desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("colours"), "have been put back")) << seen.said;
    EXPECT_EQ(seen.lines().size(), 1U) << seen.said;
    EXPECT_EQ(seen.status, 0);
    EXPECT_EQ(product.eye.gamma("DUMMY1"), bright);
    EXPECT_EQ(rescue().said, nothing) << "the second time";
}

TEST_F(Rescue, EndsAProgramThatIsStoppedSoThatItUndoesAll) {
    startDark();
    product.program->signal(SIGSTOP);
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("program"), "was ended with SIGTERM")) << seen.said;
    EXPECT_TRUE(holds(seen.of("program"), std::to_string(product.program->pid()))) << seen.said;
    EXPECT_EQ(seen.status, 0);
    EXPECT_EQ(product.program->wait(), 0) << "in order";
    EXPECT_TRUE(isBrightSoon());
    EXPECT_TRUE(product.nothingCoveredSoon());
    product.hand.push(7, 0, 200, 1000);
    EXPECT_TRUE(product.cursorIsOn(1));
}

TEST_F(Rescue, EndsItFromAConsoleToo) {
    startDark();
    product.program->signal(SIGSTOP);
    auto console = product.desktop.environment();
    console.erase("DISPLAY");
    console.erase("DBUS_SESSION_BUS_ADDRESS");
    const Visit seen = visit(console, {"--product", "palisor", "--rescue"});
    EXPECT_TRUE(holds(seen.of("program"), "was ended with SIGTERM")) << seen.said;
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(isBrightSoon());
}

TEST_F(Rescue, EndsAProgramThatHangsThoughItIsNotStopped) {
    startDark();
    {
        // Its menu is to come up, for which the toolkit waits for the server.
        const support::Stopped server(product.desktop.serverProcess());
        const auto menu =
            product.desktop.spawn("gdbus", {"call", "--session", "--dest", product.identifier(),
                                            "--object-path", "/com/tamberlo/palisor", "--method",
                                            "org.freedesktop.Application.Activate", "@a{sv} {}"});
        ASSERT_EQ(menu->wait(), 0) << menu->errors();
        ASSERT_TRUE(waitUntil([&] {
            return holds(visit(product.desktop.environment()).of("program"), "does not answer");
        }));
        const Visit seen = rescue();
        EXPECT_TRUE(server.stillIs());
        EXPECT_TRUE(product.program->wait().has_value()) << seen.said;
        EXPECT_TRUE(holds(seen.of("program"), "was ended with SIG")) << seen.said;
        EXPECT_TRUE(holds(seen.of("colours"), "TROUBLE, the X server does not answer"))
            << seen.said;
    }
    EXPECT_TRUE(isBrightSoon());
}

TEST_F(Rescue, KillsAProgramThatDoesNotHeedTheSignal) {
    fs::create_directories(lock().parent_path());
    fs::permissions(lock().parent_path(), fs::perms::owner_all);
    const fs::path copy = product.desktop.home() / "palisor";
    fs::copy_file(STUBBORN, copy);
    const auto stuck = product.desktop.spawn(copy, {lock()});
    ASSERT_TRUE(waitUntil([&] {
        return holds(visit(product.desktop.environment()).of("program"), "does not answer");
    }));
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("program"), "was ended with SIGKILL")) << seen.said;
    EXPECT_EQ(stuck->wait(), -SIGKILL);
    EXPECT_EQ(seen.status, 0);
}

TEST_F(Rescue, LeavesAnotherProgramAloneThatHasTheLock) {
    fs::create_directories(lock().parent_path());
    fs::permissions(lock().parent_path(), fs::perms::owner_all);
    const auto foreign = product.desktop.spawn(STUBBORN, {lock()});
    ASSERT_TRUE(waitUntil([&] {
        return holds(visit(product.desktop.environment()).of("program"), "does not answer");
    }));
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("program"), "another program holds the lock")) << seen.said;
    EXPECT_EQ(seen.status, 1);
    EXPECT_TRUE(foreign->running());
}

TEST_F(Rescue, LeavesAProgramAloneThatAnswersOrCannotBeAsked) {
    product.start();
    Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("program"), "runs and answers")) << seen.said;
    EXPECT_EQ(seen.status, 0);
    product.desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
    seen = rescue();
    EXPECT_TRUE(holds(seen.of("program"), "cannot be asked")) << seen.said;
    EXPECT_EQ(seen.status, 0);
    EXPECT_TRUE(product.program->running());
    EXPECT_TRUE(product.isCovered(1)) << "it holds and darkens as before";
}

TEST_F(Rescue, LeadsAnEntryToTheProgramThatIsThere) {
    writeEntry();
    EXPECT_TRUE(holds(visit(product.desktop.environment()).of("autostart"),
                      "TROUBLE, " + entryFile().string()));
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("autostart"), "started /no/such/folder/palisor-helper")) << seen.said;
    EXPECT_TRUE(holds(seen.of("autostart"), "it starts " + programs() + "/palisor-helper now"))
        << seen.said;
    EXPECT_EQ(seen.status, 0);
    EXPECT_TRUE(holds(entry(), "Exec=" + programs() + "/palisor-helper --product palisor\n"))
        << entry();
    EXPECT_EQ(rescue().said, nothing) << "the second time";
}

TEST_F(Rescue, DeletesAnEntryWhereThereIsNothingToLeadItTo) {
    writeEntry();
    const fs::path prefix = product.desktop.home() / "half"; // without palisor-helper
    fs::create_directories(prefix / "bin");
    fs::copy_file(programs() + "/palisor-doctor", prefix / "bin/palisor-doctor");
    fs::create_directory_symlink(fs::path(programs()).parent_path() / "share", prefix / "share");
    const auto doctor = product.desktop.spawn(prefix / "bin/palisor-doctor", {"--rescue"});
    EXPECT_EQ(doctor->wait(), 0) << doctor->errors();
    EXPECT_TRUE(holds(doctor->output(), "it has been deleted")) << doctor->output();
    EXPECT_FALSE(fs::exists(entryFile()));
}

TEST_F(Rescue, LeavesAnEntryAloneThatTheUserHasEdited) {
    writeEntry();
    std::ofstream(entryFile(), std::ios::app) << "X-Mine=true\n";
    const std::string before = entry();
    const Visit seen = rescue();
    EXPECT_TRUE(holds(seen.of("autostart"), "left alone")) << seen.said;
    EXPECT_EQ(seen.status, 1);
    EXPECT_EQ(entry(), before);
}

} // namespace
} // namespace desktop
