#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/system/LinuxSystemInfo.h"
#include "platform/linux/system/MachineIdentity.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>

namespace {

using platform::Version;
using platform::linux::LinuxSystemInfo;
using testing_support::KeptLog;
using testing_support::TempFolder;

constexpr const char* someId = "0123456789abcdef0123456789abcdef\n";

/// The files of a machine.
struct Machine {
    void write(const std::string& path, const std::string& text) const {
        std::filesystem::create_directories(std::filesystem::path(root.path(path)).parent_path());
        root.write(path, text);
    }
    LinuxSystemInfo info() const { return LinuxSystemInfo("com.example.a", root.path()); }

    TempFolder root;
};

TEST(SystemInfo, HasTheKernelsVersion) {
    const auto version = LinuxSystemInfo("a").systemVersion();
    ASSERT_TRUE(version);
    EXPECT_GE(version->major, 2);
}

TEST(SystemInfo, ReadsTheNumbersThatAVersionBeginsWith) {
    using platform::linux::leadingVersion;
    EXPECT_EQ(leadingVersion("6.1.0-18-amd64"), (Version{6, 1, 0}));
    EXPECT_EQ(leadingVersion("5.10"), (Version{5, 10, 0}));
    EXPECT_EQ(leadingVersion("7"), (Version{7, 0, 0}));
    EXPECT_EQ(leadingVersion("6.12-rc1"), (Version{6, 12, 0}));
    EXPECT_EQ(leadingVersion("6.x.3"), (Version{6, 0, 0}));
    for (const char* text : {"", "x", "-1.2", ".1", "99999999999999.1"})
        EXPECT_EQ(leadingVersion(text), std::nullopt) << text;
}

TEST(SystemInfo, TakesTheModelFromTheFirmwareOrTheDeviceTree) {
    const Machine machine;
    EXPECT_EQ(machine.info().machineModel(), "");
    machine.write("proc/device-tree/model", std::string("Board 4\0", 8));
    EXPECT_EQ(machine.info().machineModel(), "Board 4");
    machine.write("sys/class/dmi/id/product_name", "Laptop 9 \n");
    EXPECT_EQ(machine.info().machineModel(), "Laptop 9");
}

TEST(SystemInfo, HashesTheMachinesIdForEachApplication) {
    const Machine machine;
    EXPECT_EQ(machine.info().machineIdentifier(), std::nullopt);
    machine.write("var/lib/dbus/machine-id", someId);
    const auto identifier = machine.info().machineIdentifier();
    ASSERT_TRUE(identifier);
    EXPECT_TRUE(std::regex_match(*identifier, std::regex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-"
                                                         "[89AB][0-9A-F]{3}-[0-9A-F]{12}")))
        << *identifier;
    machine.write("etc/machine-id", someId);
    EXPECT_EQ(machine.info().machineIdentifier(), identifier) << "it stays the same";
    EXPECT_NE(LinuxSystemInfo("com.example.b", machine.root.path()).machineIdentifier(),
              identifier);
    machine.write("etc/machine-id", "1123456789abcdef0123456789abcdef\n");
    EXPECT_NE(machine.info().machineIdentifier(), identifier);
}

// As `openssl dgst -sha256 -mac HMAC -macopt hexkey:...` has it of the application's name.
TEST(SystemInfo, HashesWithTheMachinesIdAsTheKey) {
    EXPECT_EQ(platform::linux::machineIdentity(someId, "com.example.a"),
              "C5642970-8BB5-4B25-B9E4-58375A634640");
}

TEST(SystemInfo, TakesNothingElseForAMachinesId) {
    for (const char* text :
         {"", "uninitialized\n", "0123456789abcdef", "z123456789abcdef0123456789abcdef",
          "0123456789abcdef0123456789abcdef0"})
        EXPECT_EQ(platform::linux::machineIdentity(text, "a"), std::nullopt) << text;
}

struct Locale : testing::Test {
    Locale() {
        for (const char* name : {"LC_ALL", "LC_MESSAGES", "LC_ADDRESS", "LANG", "LANGUAGE"})
            ::unsetenv(name);
    }
    static void set(const char* name, const char* value) { ::setenv(name, value, 1); }
};

TEST_F(Locale, NamesTheLanguagesByTheirBareCodes) {
    EXPECT_EQ(LinuxSystemInfo("a").languages(), (std::vector<std::string>{"en"}));
    set("LANG", "it_IT.UTF-8");
    EXPECT_EQ(LinuxSystemInfo("a").languages(), (std::vector<std::string>{"it"}));
    set("LANGUAGE", "de_CH:fr::en_GB");
    EXPECT_EQ(LinuxSystemInfo("a").languages(), (std::vector<std::string>{"de", "fr", "en", "it"}));
    set("LC_ALL", "C");
    EXPECT_EQ(LinuxSystemInfo("a").languages(), (std::vector<std::string>{"en"}));
}

TEST_F(Locale, NamesTheCountry) {
    EXPECT_EQ(LinuxSystemInfo("a").countryCode(), std::nullopt);
    set("LANG", "it_IT.UTF-8");
    EXPECT_EQ(LinuxSystemInfo("a").countryCode(), "IT");
    set("LC_ADDRESS", "de_CH");
    EXPECT_EQ(LinuxSystemInfo("a").countryCode(), "CH");
    set("LC_ALL", "ca_ES@valencia");
    EXPECT_EQ(LinuxSystemInfo("a").countryCode(), "ES");
    for (const char* none : {"C", "C.UTF-8", "eo", "it_"}) {
        set("LC_ALL", none);
        EXPECT_EQ(LinuxSystemInfo("a").countryCode(), std::nullopt) << none;
    }
}

TEST(SystemInfo, TellsTheLocalTime) {
    const std::time_t before = std::time(nullptr);
    const auto told = LinuxSystemInfo("a").localTime();
    const std::time_t after = std::time(nullptr);
    std::tm parts{};
    parts.tm_year = told.year - 1900;
    parts.tm_mon = told.month - 1;
    parts.tm_mday = told.day;
    parts.tm_hour = told.hour;
    parts.tm_min = told.minute;
    parts.tm_sec = told.second;
    parts.tm_isdst = -1;
    const std::time_t shown = std::mktime(&parts);
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, after);
}

struct UserFolders : testing::Test {
    UserFolders() {
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        std::filesystem::create_directory(home.path("config"));
    }

    TempFolder home;
    KeptLog log;
    platform::linux::XdgFiles files{log};
};

TEST_F(UserFolders, HaveTheirUsualNames) {
    EXPECT_EQ(files.documentsFolder(), home.path("Documents"));
    EXPECT_EQ(files.downloadsFolder(), home.path("Downloads"));
    EXPECT_EQ(files.desktopFolder(), home.path("Desktop"));
}

TEST_F(UserFolders, HaveTheNamesThatTheUserGaveThem) {
    home.write("config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Documenti\"\n"
                                        "XDG_DOWNLOAD_DIR=\"/elsewhere/Scaricati\"\n"
                                        "XDG_DESKTOP_DIR=\"$HOME/Scrivania\"\n");
    EXPECT_EQ(files.documentsFolder(), home.path("Documenti"));
    EXPECT_EQ(files.downloadsFolder(), "/elsewhere/Scaricati");
    EXPECT_EQ(files.desktopFolder(), home.path("Scrivania"));
}

TEST_F(UserFolders, AreNotThereWithoutAHome) {
    ::unsetenv("HOME");
    EXPECT_EQ(files.documentsFolder(), std::nullopt);
    EXPECT_EQ(files.downloadsFolder(), std::nullopt);
    EXPECT_EQ(files.desktopFolder(), std::nullopt);
}

TEST_F(UserFolders, AreMadeAndWrittenInto) {
    const std::string folder = home.path("a/b");
    EXPECT_FALSE(files.write(folder + "/c", "x"));
    EXPECT_TRUE(files.makeFolder(folder));
    EXPECT_TRUE(files.makeFolder(folder));
    EXPECT_TRUE(files.write(folder + "/c", "old"));
    EXPECT_TRUE(files.write(folder + "/c", std::string("n\0w", 3)));
    EXPECT_EQ(home.read("a/b/c"), std::string("n\0w", 3));
    EXPECT_FALSE(files.makeFolder(folder + "/c"));
    EXPECT_FALSE(files.makeFolder(folder + "/c/d"));
    EXPECT_TRUE(log.lines.empty());
}

} // namespace

struct RuntimeFolder : testing::Test {
    RuntimeFolder() {
        ::setenv("XDG_RUNTIME_DIR", folder.path("run").c_str(), 1);
        ::setenv("TMPDIR", folder.path("temporary").c_str(), 1);
        std::filesystem::create_directory(folder.path("run"));
        std::filesystem::create_directory(folder.path("temporary"));
    }
    ~RuntimeFolder() override { ::unsetenv("TMPDIR"); }

    std::string amongTheTemporary() const {
        return folder.path("temporary/palisor-" + std::to_string(::geteuid()));
    }
    static std::filesystem::perms modeOf(const std::string& path) {
        return std::filesystem::status(path).permissions();
    }

    TempFolder folder;
};

TEST_F(RuntimeFolder, IsMadeInTheSessionsForTheUserAlone) {
    for (int time = 0; time < 2; ++time)
        EXPECT_EQ(platform::linux::runtimeFolder(), folder.path("run/palisor"));
    EXPECT_EQ(modeOf(folder.path("run/palisor")), std::filesystem::perms::owner_all);
}

TEST_F(RuntimeFolder, IsAmongTheTemporaryFilesWhereTheSessionHasNone) {
    for (const char* none : {"", "run", "/nowhere/at/all"}) {
        ::setenv("XDG_RUNTIME_DIR", none, 1);
        EXPECT_EQ(platform::linux::runtimeFolder(), amongTheTemporary());
    }
    EXPECT_EQ(modeOf(amongTheTemporary()), std::filesystem::perms::owner_all);
}

TEST_F(RuntimeFolder, IsNoneThatOthersCanWriteToOrHaveLaid) {
    ::setenv("XDG_RUNTIME_DIR", "", 1);
    std::filesystem::create_directory_symlink(folder.path("run"), amongTheTemporary());
    EXPECT_EQ(platform::linux::runtimeFolder(), std::nullopt);
    std::filesystem::remove(amongTheTemporary());
    std::filesystem::create_directory(amongTheTemporary());
    std::filesystem::permissions(amongTheTemporary(), std::filesystem::perms::all);
    EXPECT_EQ(platform::linux::runtimeFolder(), std::nullopt);
}
