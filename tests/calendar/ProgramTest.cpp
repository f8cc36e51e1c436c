#include "calendar/Ics.h"
#include "calendar/Session.h"
#include "testing/TempFolder.h"
#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

// The product itself, on a private desktop.

namespace desktop {
namespace {

using calendartests::count;
using calendartests::stamp;
using calendartests::valueOf;
using calendartests::vcalendar;
using calendartests::vevent;
using support::ChildProcess;

class CalendarProduct : public testing::Test {
  protected:
    void start(const std::vector<std::string>& options) {
        product.spawn({.product = "calendar-alerts", .active = active, .options = options});
    }
    ChildProcess& program() const { return *product.program; }
    void putEvent(const std::string& name, int secondsFromNow) {
        const auto start = std::time(nullptr) + secondsFromNow;
        folder.write(name + ".ics", vcalendar(vevent(name, "DTSTART:" + stamp(start) + "\n",
                                                     {{"-PT15M"}, {"-PT5M"}})));
    }
    std::size_t alarmsIn(const std::string& name) const {
        return count(folder.read(name + ".ics"), "BEGIN:VALARM");
    }
    std::unique_ptr<ChildProcess> notices() {
        auto service = product.desktop.spawn(
            SERVICE, {"org.freedesktop.Notifications", "/org/freedesktop/Notifications"});
        EXPECT_TRUE(service->waitForText("ready")) << service->errors();
        return service;
    }

    bool active = true;
    Product product;
    testing_support::TempFolder folder;
};

// Whatever the calendars, the next pass is the program's own: here it is waited for.
TEST_F(CalendarProduct, GivesTheEventsOfAFolderOneAlarmEach) {
    putEvent("soon", 1800);
    putEvent("far", 2 * 3600);
    start({"--calendar", folder.path()});
    ASSERT_TRUE(waitUntil([this] { return alarmsIn("soon") == 1; })) << program().errors();
    EXPECT_EQ(valueOf(folder.read("soon.ics"), "TRIGGER"), "PT0S");
    EXPECT_EQ(valueOf(folder.read("soon.ics"), "ATTACH"), "Pop");
    EXPECT_EQ(alarmsIn("far"), 2U);
    EXPECT_TRUE(program().waitForText("Edited ID: soon"));
    putEvent("new", 900);
    ASSERT_TRUE(waitUntil([this] { return alarmsIn("new") == 1; })) << program().errors();
}

TEST_F(CalendarProduct, GivesTheEventsOfTheDesktopsCalendarsOneAlarmEach) {
    calendartests::Client other(product.desktop.environment());
    other.ask("new work");
    other.add("work", vcalendar(vevent("soon", "DTSTART:" + stamp(std::time(nullptr) + 900) + "\n",
                                       {{"-PT15M"}, {"-PT5M"}})));
    start({});
    const auto hasOneAlarm = [&other] {
        const std::string text = other.ask("get work soon");
        return count(text, "BEGIN:VALARM") == 1 && valueOf(text, "TRIGGER") == "PT0S" &&
               valueOf(text, "ATTACH") == "Pop";
    };
    EXPECT_TRUE(waitUntil(hasOneAlarm)) << program().errors();
    EXPECT_EQ(program().end(), 0) << program().errors();
}

TEST_F(CalendarProduct, WithoutItsCalendarSaysSoAndStays) {
    const auto service = notices();
    start({"--calendar", folder.path("missing")});
    EXPECT_TRUE(program().waitForText("!granted")) << program().errors();
    EXPECT_TRUE(service->waitForText("The calendars cannot be reached")) << service->output();
    EXPECT_TRUE(program().running());
    EXPECT_TRUE(program().waitForText(folder.path("missing")));
}

// Else the calendars' library would end it.
TEST_F(CalendarProduct, WithoutTheDescriptionOfTheCalendarsSettingsSaysSoAndStays) {
    const auto service = notices();
    product.desktop.setVariable("XDG_DATA_DIRS", folder.path());
    start({});
    EXPECT_TRUE(program().waitForText("description of their settings is missing"))
        << program().errors();
    EXPECT_TRUE(service->waitForText("The calendars cannot be reached")) << service->output();
    EXPECT_TRUE(program().running());
}

TEST_F(CalendarProduct, DoesNothingWhileItIsSwitchedOff) {
    putEvent("soon", 1800);
    active = false;
    start({"--calendar", folder.path()});
    ASSERT_TRUE(program().waitForText("no tray")) << program().errors();
    EXPECT_EQ(alarmsIn("soon"), 2U);
    EXPECT_EQ(program().errors().find("====="), std::string::npos);
}

TEST_F(CalendarProduct, AloneLoadsTheModule) {
    for (const char* name : {"palisor", "calendar-alerts"}) {
        const auto asked = product.desktop.spawn("ldd", {programs() + "/" + name});
        ASSERT_EQ(asked->wait(), 0);
        EXPECT_EQ(asked->output().find("libecal"), std::string::npos);
        EXPECT_EQ(asked->output().find("libical"), std::string::npos);
    }
    product.spawn({.product = "palisor"});
    ASSERT_TRUE(product.coveredSoon(1, 0));
    const auto maps = [](const ChildProcess& process) {
        std::ostringstream text;
        text << std::ifstream("/proc/" + std::to_string(process.pid()) + "/maps").rdbuf();
        return text.str();
    };
    EXPECT_EQ(maps(program()).find("calendar.so"), std::string::npos);
    start({"--calendar", folder.path()});
    EXPECT_TRUE(
        waitUntil([&] { return maps(program()).find("calendar.so") != std::string::npos; }));
}

} // namespace
} // namespace desktop
