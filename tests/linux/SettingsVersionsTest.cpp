#include "linux/SettingsStage.h"

#include <filesystem>

// The settings file that each version has left with its users, "versions/VERSION.plist": a later
// one reads all of it, and gives it back whole when it has changed a setting.

namespace {

using namespace settings_stage;

struct SettingsOfEachVersion : SettingsFileTest {
    void expectAll(const SettingsFile& settings, const std::string& version) const {
        const std::pair<const char*, const char*> texts[] = {{"CHECK_0", "1"},
                                                             {"CHECK_1", "0"},
                                                             {"HOT_BOUNDS", "0"},
                                                             {"PRIMOACCESSO", "1"},
                                                             {"RECOMMENDAUTOLOGIN", "1"}};
        for (const auto& [key, value] : texts)
            EXPECT_EQ(settings.stringForKey(key), value) << version << " " << key;
        const Value* shortcut = settings.object("customShortcut");
        ASSERT_NE(shortcut, nullptr) << version;
        const Value expected{platform::Dictionary{{"keyCode", Value{std::int64_t{40}}},
                                                  {"modifierFlags", Value{std::int64_t{786432}}}}};
        EXPECT_TRUE(*shortcut == expected) << version;
    }
};

TEST_F(SettingsOfEachVersion, AreReadAndKept) {
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator(VERSIONS)) {
        const std::string version = file.path().stem();
        std::filesystem::copy_file(file.path(), path(),
                                   std::filesystem::copy_options::overwrite_existing);
        {
            SettingsFile settings = open();
            expectAll(settings, version);
            settings.set("SCHEDULE", Value{"7"s});
            settings.synchronize();
        }
        const SettingsFile settings = open();
        expectAll(settings, version);
        EXPECT_EQ(settings.stringForKey("SCHEDULE"), "7") << version;
        EXPECT_TRUE(log.lines.empty()) << version;
        ++count;
    }
    EXPECT_GE(count, 1);
}

} // namespace
