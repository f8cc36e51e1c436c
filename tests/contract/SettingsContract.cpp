#include "platform/linux/settings/SettingsFile.h"
#include "platform/memory/Effects.h"
#include "platform/memory/Settings.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>
#include <limits>

// What every settings store promises.

namespace {

using platform::Data;
using platform::Dictionary;
using platform::Value;
using testing_support::KeptLog;
using testing_support::TempFolder;
using namespace std::string_literals;

struct MemoryStore {
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Settings settings{effects};
    platform::Settings& get() { return settings; }
};

struct FileStore {
    TempFolder folder;
    KeptLog log;
    platform::linux::SettingsFile settings{folder.path("a.plist"), log, [] {}};
    platform::Settings& get() { return settings; }
};

template <class Store>
class SettingsContract : public testing::Test {
  protected:
    Store store;
    platform::Settings& settings = store.get();
};

using Stores = testing::Types<MemoryStore, FileStore>;
TYPED_TEST_SUITE(SettingsContract, Stores);

TYPED_TEST(SettingsContract, AnswersNothingForAnAbsentKey) {
    EXPECT_EQ(this->settings.object("a"), nullptr);
    EXPECT_FALSE(this->settings.boolForKey("a"));
    EXPECT_EQ(this->settings.integerForKey("a"), 0);
    EXPECT_EQ(this->settings.stringForKey("a"), std::nullopt);
}

TYPED_TEST(SettingsContract, KeepsTheTypesApartThroughASave) {
    const Value values[] = {Value{"1"s},
                            Value{""s},
                            Value{true},
                            Value{false},
                            Value{std::int64_t{1}},
                            Value{std::int64_t{-5}},
                            Value{std::numeric_limits<std::int64_t>::min()},
                            Value{Data{0, 1, 255}},
                            Value{Data{}},
                            Value{Dictionary{{"x", Value{"1"s}}, {"y", Value{true}}}},
                            Value{Dictionary{}}};
    auto& domain = this->settings;
    int number = 0;
    for (const auto& value : values)
        domain.set("key" + std::to_string(number++), value);
    domain.flush();
    domain.resetStandardUserDefaults();
    number = 0;
    for (const auto& value : values) {
        const Value* stored = domain.object("key" + std::to_string(number));
        ASSERT_NE(stored, nullptr) << number;
        EXPECT_EQ(*stored, value) << number;
        ++number;
    }
}

TYPED_TEST(SettingsContract, AStringOfOneIsNotTheNumberOne) {
    this->settings.set("a", Value{std::int64_t{1}});
    EXPECT_EQ(this->settings.stringForKey("a"), std::nullopt);
    this->settings.set("a", Value{"1"s});
    EXPECT_EQ(this->settings.stringForKey("a"), "1");
}

TYPED_TEST(SettingsContract, ARegisteredDefaultShowsUntilAValueIsSetAndAgainAfterItsRemoval) {
    auto& domain = this->settings;
    domain.registerDefault("a", Value{true});
    EXPECT_TRUE(domain.boolForKey("a"));
    domain.set("a", Value{false});
    EXPECT_FALSE(domain.boolForKey("a"));
    domain.remove("a");
    EXPECT_TRUE(domain.boolForKey("a"));
}

TYPED_TEST(SettingsContract, ARegisteredDefaultIsNotPutInPlaceOfAStoredValue) {
    auto& domain = this->settings;
    domain.set("a", Value{"own"s});
    domain.registerDefault("a", Value{"default"s});
    EXPECT_EQ(domain.stringForKey("a"), "own");
}

TYPED_TEST(SettingsContract, RereadingForgetsWhatNobodyAskedToSave) {
    auto& domain = this->settings;
    domain.set("kept", Value{"1"s});
    domain.set("both", Value{"before"s});
    domain.flush();
    domain.set("both", Value{"after"s});
    domain.set("new", Value{"1"s});
    domain.remove("kept");
    domain.resetStandardUserDefaults();
    EXPECT_EQ(domain.stringForKey("kept"), "1");
    EXPECT_EQ(domain.stringForKey("both"), "before");
    EXPECT_EQ(domain.object("new"), nullptr);
}

TYPED_TEST(SettingsContract, RereadingKeepsWhatWasSynchronizedBefore) {
    auto& domain = this->settings;
    domain.set("a", Value{"1"s});
    domain.synchronize();
    domain.resetStandardUserDefaults();
    EXPECT_EQ(domain.stringForKey("a"), "1");
}

TYPED_TEST(SettingsContract, RereadingKeepsTheRegisteredDefaults) {
    this->settings.registerDefault("a", Value{true});
    this->settings.resetStandardUserDefaults();
    EXPECT_TRUE(this->settings.boolForKey("a"));
}

TYPED_TEST(SettingsContract, ANewPersistentDomainReplacesEveryStoredValueAndNoDefault) {
    auto& domain = this->settings;
    domain.registerDefault("default", Value{true});
    domain.set("old", Value{"1"s});
    domain.set("default", Value{false});
    domain.flush();
    domain.setPersistentDomain({{"new", Value{"2"s}}});
    domain.flush();
    domain.resetStandardUserDefaults();
    EXPECT_EQ(domain.object("old"), nullptr);
    EXPECT_EQ(domain.stringForKey("new"), "2");
    EXPECT_TRUE(domain.boolForKey("default"));
}

TYPED_TEST(SettingsContract, TellsAnObserverOfEachChangeOfWhatItsKeyReadsAs) {
    auto& domain = this->settings;
    domain.registerDefault("a", Value{true});
    int told = 0;
    domain.observe("a", [&] { ++told; });
    domain.set("a", Value{true});
    EXPECT_EQ(told, 0) << "it reads as before";
    domain.set("a", Value{false});
    EXPECT_EQ(told, 1);
    domain.set("b", Value{true});
    EXPECT_EQ(told, 1);
    domain.remove("a");
    EXPECT_EQ(told, 2);
    domain.registerDefault("a", Value{false});
    EXPECT_EQ(told, 3);
    domain.setPersistentDomain({{"a", Value{true}}});
    EXPECT_EQ(told, 4);
}

TYPED_TEST(SettingsContract, TellsAnObserverWhatRereadingHasChanged) {
    auto& domain = this->settings;
    domain.set("a", Value{"stored"s});
    domain.flush();
    std::vector<std::string> seen;
    domain.observe("a", [&] { seen.emplace_back(domain.stringForKey("a").value_or("")); });
    domain.set("a", Value{"not saved"s});
    domain.resetStandardUserDefaults();
    domain.resetStandardUserDefaults();
    EXPECT_EQ(seen, (std::vector<std::string>{"not saved", "stored"}));
}

TYPED_TEST(SettingsContract, AnObserverMayChangeSettingsItself) {
    auto& domain = this->settings;
    int told = 0;
    domain.observe("a", [&] { domain.set("b", Value{"from the observer"s}); });
    domain.observe("b", [&] { ++told; });
    domain.set("a", Value{"1"s});
    EXPECT_EQ(domain.stringForKey("b"), "from the observer");
    EXPECT_EQ(told, 1);
}

} // namespace
