#include "unit/Program.h"
#include "util/MacUtils.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Data;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* session = "session=1; HttpOnly; domain=a.invalid; path=/";
constexpr const char* lasting = "lasting=perch\u00e9; secure; expires=Fri, 01 Jan 2038 00:00:00 "
                                "GMT; domain=.b.invalid; path=/x";

class Cookies : public testing::Test {
  protected:
    std::vector<platform::Cookie> jar() {
        std::vector<platform::Cookie> all;
        program.platform.web.cookies([&all](const auto& cookies) { all = cookies; });
        program.platform.runLoop.performPending();
        return all;
    }

    void save() {
        MacUtils::saveCookies(services);
        program.platform.runLoop.performPending();
    }

    void archive(const std::string& text, std::string_view key = "cookies") {
        program.setting(key, Value{Data(text.begin(), text.end())});
    }

    Program program{variants::barrier};
    platform::Platform services = program.platform.services();
    platform::memory::Web& web = program.platform.web;
};

TEST_F(Cookies, ComeBackFromTheSettingsAsTheyWere) {
    web.setCookie(session);
    web.setCookie(lasting);
    save();
    MacUtils::clearCacheWK(services);
    ASSERT_THAT(jar(), IsEmpty());
    MacUtils::loadCookies(services);
    EXPECT_THAT(jar(), UnorderedElementsAre(session, lasting));
}

TEST_F(Cookies, AreStoredAsDataOnceAndSynchronized) {
    web.setCookie(session);
    program.effects();
    save();
    EXPECT_THAT(program.effects(),
                ElementsAre(testing::StartsWith(R"(write {"key":"cookies")"), "synchronize {}"));
    const auto* value = program.platform.settings.object("cookies");
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(std::holds_alternative<Data>(value->held));
}

TEST_F(Cookies, AreStoredUnderAnotherKeyWhereOneIsGiven) {
    web.setCookie(session);
    MacUtils::saveCookies(services, "other");
    program.platform.runLoop.performPending();
    EXPECT_EQ(program.platform.settings.object("cookies"), nullptr);
    MacUtils::clearCacheWK(services);
    MacUtils::loadCookies(services);
    EXPECT_THAT(jar(), IsEmpty());
    MacUtils::loadCookies(services, "other");
    EXPECT_THAT(jar(), ElementsAre(session));
}

TEST_F(Cookies, OfAnEmptyStoreAreSavedAsNone) {
    archive(std::string(session) + "\n");
    save();
    EXPECT_EQ(*program.platform.settings.object("cookies"), Value{Data{}});
}

TEST_F(Cookies, ThatAreLoadedJoinThoseThatAreThere) {
    web.setCookie(session);
    archive(std::string(lasting) + "\n");
    MacUtils::loadCookies(services);
    EXPECT_THAT(jar(), UnorderedElementsAre(session, lasting));
}

TEST_F(Cookies, AreNotLoadedFromASettingThatIsMissingOrNoData) {
    MacUtils::loadCookies(services);
    program.setting("cookies", Value{std::string(session) + "\n"});
    MacUtils::loadCookies(services);
    program.setting("cookies", Value{true});
    MacUtils::loadCookies(services);
    EXPECT_THAT(jar(), IsEmpty());
}

TEST_F(Cookies, ThatAreDamagedAreLeftOutAndTheOthersLoaded) {
    archive("\n\nno cookie\n=; domain=a.invalid\n" + std::string(session) + "\n\xff\xfe\n" +
            lasting); // cut off
    MacUtils::loadCookies(services);
    EXPECT_THAT(jar(), ElementsAre(session));
}

TEST_F(Cookies, ThatWereSavedAreKeptWhereThereIsNoEngine) {
    archive(std::string(session) + "\n");
    const Value before = *program.platform.settings.object("cookies");
    web.removeEngine();
    save();
    EXPECT_EQ(*program.platform.settings.object("cookies"), before);
    MacUtils::loadCookies(services);
}

TEST_F(Cookies, AndWhatPagesStoredAreGoneAfterClearing) {
    web.setCookie(session);
    web.pageStores();
    MacUtils::clearCacheWK(services);
    EXPECT_THAT(jar(), IsEmpty());
    EXPECT_EQ(web.storedByPages(), 0);
}

} // namespace
} // namespace palisor
