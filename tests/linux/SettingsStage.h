#pragma once

#include "platform/linux/settings/SettingsFile.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>

// A settings file in a folder of its own.

namespace settings_stage {

using platform::Value;
using platform::linux::SettingsFile;
using testing_support::KeptLog;
using testing_support::TempFolder;
using namespace std::string_literals;
using Names = std::vector<std::string>;

inline const std::string head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

inline std::string listOf(const std::string& items) {
    return head + "<dict>" + items + "</dict>\n</plist>\n";
}

class SettingsFileTest : public testing::Test {
  protected:
    TempFolder folder;
    KeptLog log;
    int saveRequests = 0;
    int looks = 0;

    std::string path() const { return folder.path("a.plist"); }
    SettingsFile open() { return SettingsFile(path(), log, nullptr); }
    SettingsFile openDeferred() {
        return SettingsFile(path(), log, [this] { ++saveRequests; });
    }
    SettingsFile openPatient() {
        return SettingsFile(
            path(), log, [this] { ++saveRequests; }, [this] { ++looks; });
    }
    void save(SettingsFile& settings, const std::string& key, const std::string& text) {
        settings.set(key, Value{text});
        settings.synchronize();
    }
};

} // namespace settings_stage
