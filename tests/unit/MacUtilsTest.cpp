#include "util/MacUtils.h"
#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::ElementsAre;

TEST(FixDefaults, TakesItsProbeBackWhenTheSettingsFileIsThere) {
    Program program(variants::barrier);
    MacUtils::fixDefaultsIfNeeded(program.platform.services());
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"qwe","value":"qwe"})", "synchronize {}",
                            R"(write {"key":"qwe","value":null})", "synchronize {}"));
}

TEST(FixDefaults, MakesAnEmptyFileAndEndsWhenThereIsNone) {
    Program program(variants::barrier);
    program.platform.settings.loseFile();
    EXPECT_THROW(MacUtils::fixDefaultsIfNeeded(program.platform.services()),
                 platform::memory::ProgramEnded);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"qwe","value":"qwe"})", "synchronize {}",
                            "synchronize {}",
                            R"-(log {"text":"FIX for PREFERENCES but need restart --> exit(0)"})-",
                            R"(write {"key":"qwe","value":null})", "synchronize {}",
                            R"(exit {"status":0})"));
    EXPECT_TRUE(program.platform.files.exists("/memory/Preferences/com.tamberlo.palisor.plist"));
    EXPECT_EQ(program.platform.settings.object("qwe"), nullptr);
}

TEST(FixDefaults, DoesNotLookForAFileWhereThereIsNoPreferencesFolder) {
    Program program(variants::barrier);
    program.platform.settings.loseFile();
    program.platform.files.removePreferencesFolder();
    EXPECT_NO_THROW(MacUtils::fixDefaultsIfNeeded(program.platform.services()));
    EXPECT_EQ(program.platform.settings.object("qwe"), nullptr);
}

TEST(DeleteAllSavedUserDefaults, MakesTheNextLaunchAFirstLaunch) {
    Program program(variants::cursorHider);
    program.app.initiailValuesForUserDefaults();
    const Lines firstLaunch = program.effects({"write", "synchronize", "timer"});
    MacUtils::deleteAllSavedUserDefaults(program.platform.services());
    program.effects();
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.effects({"write", "synchronize", "timer"}), firstLaunch);
}

} // namespace
} // namespace palisor
