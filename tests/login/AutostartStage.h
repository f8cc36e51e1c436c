#pragma once

#include "platform/linux/login/AutostartItems.h"
#include "testing/Child.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace logintests {

using platform::linux::AutostartItems;
using testing_support::KeptLog;
using testing_support::TempFolder;
using Paths = std::vector<std::optional<std::string>>;

inline constexpr const char* helperFile = "autostart/org.example.appHelper.desktop";
inline constexpr const char* odd =
    "odd \"dir\" $HOME \\back 100% `tick` 'q' & ; *?#()~|<> \xc3\xbc";

struct Autostart : testing::Test {
    AutostartItems itemsOf(const std::string& bin) {
        return {folder.path("autostart"),
                {.identifier = "org.example.app",
                 .name = "Example",
                 .comment = "Start at Login",
                 .icon = bin + "/icon.svg",
                 .helper = {bin + "/example-helper", "--product", "example"},
                 .options = {"--early"},
                 .program = bin + "/app",
                 .helperName = "Example (helper)"},
                log};
    }
    AutostartItems items() { return itemsOf("/opt/example/bin"); }

    void enable() { items().setEnabled("org.example.appHelper", true); }
    void disable() { items().setEnabled("org.example.appHelper", false); }

    std::string helperEntry() const { return folder.read(helperFile); }
    bool hasHelperEntry() const { return std::filesystem::exists(folder.path(helperFile)); }
    platform::linux::DesktopEntry parsed() const {
        return platform::linux::DesktopEntry(helperEntry());
    }

    void edit(const std::string& what, const std::string& by) {
        std::string text = helperEntry();
        const auto at = text.find(what);
        ASSERT_NE(at, std::string::npos) << what;
        folder.write(helperFile, text.replace(at, what.size(), by));
    }

    /// What a desktop's settings do to switch an entry off.
    void switchOffIn(const std::string& desktop) {
        if (desktop == "xfce" || desktop == "lxqt")
            edit("Terminal=", "Hidden=true\nTerminal=");
        else if (desktop == "gnome")
            edit("X-GNOME-Autostart-enabled=true", "X-GNOME-Autostart-enabled=false");
        else
            edit("Terminal=", "X-MATE-Autostart-enabled=false\nTerminal=");
    }

    Paths list() {
        Paths paths;
        for (const auto& item : items().sessionList())
            paths.push_back(item.path);
        return paths;
    }

    void expectValid(const std::string& file) const {
        support::ChildProcess validator(
            {{"desktop-file-validate", folder.path(file)}, {{"PATH", std::getenv("PATH")}}});
        EXPECT_EQ(validator.wait(), 0) << folder.read(file);
        EXPECT_EQ(validator.output() + validator.errors(), "");
    }

    TempFolder folder;
    KeptLog log;
};

} // namespace logintests
