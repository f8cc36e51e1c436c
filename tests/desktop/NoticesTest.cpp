#include "testing/desktop/Product.h"

#include <fstream>
#include <gtest/gtest.h>

// What goes wrong and matters to a person is shown by the desktop's notification service.

namespace desktop {
namespace {

using support::ChildProcess;
using support::PrivateDesktop;

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

PrivateDesktop::Options withoutScreenSaver() {
    PrivateDesktop::Options options;
    options.serverArguments = {"-extension", "MIT-SCREEN-SAVER"};
    return options;
}

/// Stands in for the desktop's own: it writes what it is asked to show.
std::unique_ptr<ChildProcess> serviceOn(const PrivateDesktop& desktop) {
    auto service =
        desktop.spawn(SERVICE, {"org.freedesktop.Notifications", "/org/freedesktop/Notifications"});
    if (!service->waitForText("ready")) throw std::runtime_error(service->errors());
    return service;
}

TEST(Notices, SayWhereSettingsAreThatCouldNotBeRead) {
    Product product;
    const auto service = serviceOn(product.desktop);
    std::filesystem::create_directories(product.settingsFile().parent_path());
    std::ofstream(product.settingsFile()) << "<plist><dict><key>ATT";
    product.program = product.run();
    EXPECT_TRUE(service->waitForText("The settings could not be read")) << service->output();
    EXPECT_TRUE(service->waitForText(product.settingsFile().string() + ".damaged"));
    EXPECT_TRUE(product.program->running());
}

TEST(Notices, SayThatTheShortcutIsAnotherProgramsAlsoInItalian) {
    Product product;
    product.desktop.startWindowManager("openbox"); // Super+E and Super+F2 are its own
    const auto service = serviceOn(product.desktop);
    const Setting setting{.more = {{"customShortcut", shortcut(14, 0x100000)}}};
    product.start(setting);
    EXPECT_TRUE(service->waitForText("Super+E is used by another program")) << service->output();
    product.program->end();
    EXPECT_EQ(count(service->output(), "Super+F2"), 0U) << "it does nothing in any case";
    product.desktop.setVariable("LANG", "it_IT.UTF-8");
    product.start(setting);
    EXPECT_TRUE(service->waitForText("Super+E è usata")) << service->output();
}

TEST(Notices, SayWhatToInstallToOpenAPage) {
    Product product;
    const auto service = serviceOn(product.desktop);
    const auto nothing = product.desktop.home() / "nothing";
    std::filesystem::create_directories(nothing);
    product.desktop.setVariable("PATH", nothing.string());
    product.useDictionary("palisor", {{"IDApp", number(8)},
                                      {"CFBundleDisplayName", text("Palisor")},
                                      {"CFBundleIdentifier", text("com.tamberlo.palisor")},
                                      {"StoreWebPage", text("https://store.tamberlo.example/%@")}});
    product.start();
    for (int times = 0; times < 2; ++times)
        product.choose(6);
    EXPECT_TRUE(service->waitForText("xdg-utils")) << product.program->errors();
    product.program->end(); // which sends what is on its way
    EXPECT_EQ(count(service->output(), "Notify"), 1U) << service->output();
}

TEST(Notices, SayThatTheDisplaysMayGoToSleepOnce) {
    Product product(withoutScreenSaver());
    const auto service = serviceOn(product.desktop);
    product.start({.product = "stay-awake"});
    EXPECT_TRUE(service->waitForText("The displays may go to sleep")) << service->output();
    product.switchOver();
    product.switchOver();
    product.program->end();
    EXPECT_EQ(count(service->output(), "Notify"), 1U) << service->output();
}

TEST(Notices, AreNotWaitedForWhereNobodyShowsThem) {
    Product product(withoutScreenSaver());
    product.start({.product = "stay-awake"});
    EXPECT_TRUE(product.program->waitForText("notices cannot be shown")) << "once";
    product.switchOver();
    product.switchOver();
    EXPECT_EQ(product.program->end(), 0);
    EXPECT_EQ(count(product.program->errors(), "notices cannot be shown"), 1U);
}

} // namespace
} // namespace desktop
