#include "power/ScreenSaverWatch.h"
#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

#include <csignal>

// The product that keeps the displays awake, beside the X server's own screen saver and Xfce's
// power manager.

namespace desktop {
namespace {

using powertests::ScreenSaverWatch;
using support::ChildProcess;

const Setting keepAwake{.product = "stay-awake"};
constexpr const char* screenSaverName = "org.freedesktop.ScreenSaver";
constexpr const char* screenSaverPath = "/org/freedesktop/ScreenSaver";

const Setting keepAwakeOff{.product = "stay-awake", .active = false};

support::PrivateDesktop::Options without(const std::vector<std::string>& serverArguments,
                                         bool bus) {
    support::PrivateDesktop::Options options;
    options.serverArguments = serverArguments;
    options.bus = bus;
    return options;
}

/// Whom Xfce's power manager lets keep the displays on.
std::string inhibitors(const Product& product) {
    return product.desktop.call({"--dest=org.freedesktop.PowerManagement",
                                 "/org/freedesktop/PowerManagement/Inhibit",
                                 "org.freedesktop.PowerManagement.Inhibit.GetInhibitors"});
}

bool isListed(const Product& product) {
    return inhibitors(product).find("Stay Awake") != std::string::npos;
}

bool isListedSoon(const Product& product) {
    return waitUntil([&] { return isListed(product); });
}

/// It shows whom it was asked by. What takes the question back is not tried on it: without the
/// service that tells of batteries it crashes then, about every second time.
std::unique_ptr<ChildProcess> startPowerManager(const Product& product) {
    auto manager = product.desktop.spawn("xfce4-power-manager", {"--no-daemon"});
    if (!waitUntil([&] { return !inhibitors(product).empty(); }))
        throw std::runtime_error("no power manager: " + manager->errors());
    return manager;
}

std::unique_ptr<ChildProcess> startService(const Product& product, const std::string& name,
                                           const std::string& path,
                                           const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{name, path};
    arguments.insert(arguments.end(), more.begin(), more.end());
    auto service = product.desktop.spawn(SERVICE, arguments);
    if (!service->waitForText("ready")) throw std::runtime_error(service->errors());
    return service;
}

bool says(const Product& product, const std::string& text) {
    return product.program->waitForText(text);
}

TEST(Awake, HoldsTheScreenSaverOffAsLongAsItIsSwitchedOn) {
    Product product;
    ScreenSaverWatch saver(product.desktop.display());
    ASSERT_TRUE(saver.starts()) << "it must start at all";
    product.start(keepAwake);
    ASSERT_TRUE(says(product, "kIOReturnSuccess"));
    EXPECT_TRUE(saver.staysOff());
    product.switchOver();
    ASSERT_TRUE(says(product, "sometimes wrong ON READY FOR SLEEP success:0"));
    EXPECT_TRUE(saver.starts());
    product.switchOver();
    EXPECT_TRUE(saver.staysOff());
}

TEST(Awake, LetsTheScreenSaverStartWhenItStartsSwitchedOff) {
    Product product;
    ScreenSaverWatch saver(product.desktop.display());
    product.start(keepAwakeOff);
    EXPECT_TRUE(saver.starts());
}

TEST(Awake, IsNotWhatTheOtherProductsDo) {
    Product product;
    ScreenSaverWatch saver(product.desktop.display());
    product.start({.product = "orbisant"});
    EXPECT_TRUE(saver.starts());
    EXPECT_EQ(product.program->errors().find("noSleep"), std::string::npos);
}

TEST(Awake, EndsWithTheProcessHoweverThatEnds) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        Product product;
        ScreenSaverWatch saver(product.desktop.display());
        product.start(keepAwake);
        ASSERT_TRUE(says(product, "kIOReturnSuccess"));
        product.program->signal(signal);
        product.program->wait();
        EXPECT_TRUE(saver.starts()) << signal;
    }
}

TEST(Awake, IsSeenByThePowerManagerOfXfce) {
    Product product;
    const auto manager = startPowerManager(product);
    ASSERT_FALSE(isListed(product));
    product.start(keepAwake);
    EXPECT_TRUE(isListedSoon(product)) << inhibitors(product);
}

TEST(Awake, IsToldToAPowerManagerThatStartsLater) {
    Product product;
    product.start(keepAwake);
    ASSERT_TRUE(says(product, "kIOReturnSuccess"));
    auto manager = startPowerManager(product);
    EXPECT_TRUE(isListedSoon(product));
    manager.reset();
    manager = startPowerManager(product);
    EXPECT_TRUE(isListedSoon(product)) << "it starts again";
}

TEST(Awake, IsNotToldToAPowerManagerThatStartsWhenItIsSwitchedOff) {
    Product product;
    product.start(keepAwake);
    product.switchOver();
    ASSERT_TRUE(says(product, "readyToSleep"));
    const auto early = startService(product, screenSaverName, screenSaverPath);
    product.switchOver();
    EXPECT_TRUE(early->waitForText("Inhibit"));
    EXPECT_EQ(early->output().find("UnInhibit"), std::string::npos);
    EXPECT_EQ(early->output().find("Inhibit"), early->output().rfind("Inhibit")) << "asked once";
}

TEST(Awake, IsTakenBackAtTheEnd) {
    Product product;
    const auto service = startService(product, screenSaverName, screenSaverPath);
    product.start(keepAwake);
    ASSERT_TRUE(service->waitForText("Inhibit"));
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(service->waitForText("UnInhibit uint:41"));
}

TEST(Awake, DoesNotKeepTheProgramWhereTheBusIsStoppedAtTheEnd) {
    Product product;
    const auto service = startService(product, screenSaverName, screenSaverPath);
    product.start(keepAwake);
    ASSERT_TRUE(service->waitForText("Inhibit"));
    const support::Stopped bus(product.desktop.busProcess());
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(bus.stillIs());
}

TEST(Awake, HoldsTheScreenSaverOffWithoutASessionBus) {
    Product product(without({}, false));
    ScreenSaverWatch saver(product.desktop.display());
    product.start(keepAwake);
    EXPECT_TRUE(says(product, "kIOReturnSuccess"));
    EXPECT_NE(product.program->errors().find("no program of the session"), std::string::npos);
    EXPECT_TRUE(saver.staysOff());
}

TEST(Awake, AsksThePowerManagerAloneWhereTheServerHasNoScreenSaverExtension) {
    Product product(without({"-extension", "MIT-SCREEN-SAVER"}, true));
    const auto manager = startPowerManager(product);
    product.start(keepAwake);
    EXPECT_TRUE(says(product, "kIOReturnSuccess"));
    EXPECT_NE(product.program->errors().find("MIT-SCREEN-SAVER"), std::string::npos);
    EXPECT_TRUE(isListedSoon(product));
}

TEST(Awake, SaysThatItFailedWhereThereIsNeither) {
    Product product(without({"-extension", "MIT-SCREEN-SAVER"}, true));
    product.start(keepAwake);
    EXPECT_TRUE(says(product, "sometimes wrong on NO SLEEP success:1"));
    product.switchOver();
    ASSERT_TRUE(says(product, "readyToSleep"));
    product.switchOver();
    EXPECT_TRUE(product.program->running());
    EXPECT_EQ(product.program->errors().find("READY FOR SLEEP"), std::string::npos);
}

TEST(Awake, IsAskedOfAScreenSaverAndOfASessionManagerInTheirWords) {
    Product product;
    const auto saver = startService(product, screenSaverName, screenSaverPath);
    const auto session =
        startService(product, "org.gnome.SessionManager", "/org/gnome/SessionManager");
    product.start(keepAwake);
    EXPECT_TRUE(saver->waitForText("Inhibit QString:Stay Awake QString:Describe Activity Type\n"));
    EXPECT_TRUE(session->waitForText(
        "Inhibit QString:Stay Awake uint:0 QString:Describe Activity Type uint:8\n"));
    product.switchOver();
    EXPECT_TRUE(saver->waitForText("UnInhibit uint:41\n"));
    EXPECT_TRUE(session->waitForText("Uninhibit uint:41\n"));
}

TEST(Awake, SurvivesAServiceThatRefuses) {
    Product product;
    const auto saver = startService(product, screenSaverName, screenSaverPath, {"refuse"});
    product.start(keepAwake);
    EXPECT_TRUE(says(product, "org.freedesktop.ScreenSaver answers: not today"));
    EXPECT_TRUE(product.program->running());
}

} // namespace
} // namespace desktop
