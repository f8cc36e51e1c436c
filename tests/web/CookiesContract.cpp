#include "platform/memory/MemoryPlatform.h"
#include "web/Stage.h"

#include <QCoreApplication>
#include <QNetworkCookie>
#include <gmock/gmock.h>

// What every web engine promises of its cookies.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct MemoryBackend {
    platform::memory::MemoryPlatform platform;
    platform::Web& web = platform.web;
    void turn() { platform.runLoop.performPending(); }
};

struct RealBackend {
    webtests::Engine engine;
    platform::Web& web = engine.web;
    RealBackend() { web.removeAllData(); }
    void turn() { QCoreApplication::processEvents(); }
};

/// What tells cookies apart, and what they are: the order of the attributes is the engine's.
std::string plain(const platform::Cookie& text) {
    const auto cookies = QNetworkCookie::parseCookies(QByteArray::fromStdString(text));
    if (cookies.size() != 1) return "no cookie: " + text;
    const QNetworkCookie& cookie = cookies.first();
    return (cookie.name() + '=' + cookie.value() + ' ' + cookie.domain().toUtf8() +
            cookie.path().toUtf8() + (cookie.isSecure() ? " secure" : "") +
            (cookie.isHttpOnly() ? " HttpOnly" : "") + (cookie.isSessionCookie() ? "" : " lasting"))
        .toStdString();
}

template <class Backend>
class CookiesContract : public testing::Test {
  protected:
    std::vector<std::string> jar() {
        bool told = false;
        std::vector<std::string> all;
        web.cookies([&](const auto& cookies) {
            for (const auto& cookie : cookies)
                all.push_back(plain(cookie));
            told = true;
        });
        EXPECT_FALSE(told) << "not from inside the call";
        EXPECT_TRUE(webtests::waitUntil([&] {
            backend.turn();
            return told;
        }));
        return all;
    }

    Backend backend;
    platform::Web& web = backend.web;
};

using Backends = testing::Types<MemoryBackend, RealBackend>;
TYPED_TEST_SUITE(CookiesContract, Backends);

TYPED_TEST(CookiesContract, AreNoneAtFirst) {
    EXPECT_THAT(this->jar(), IsEmpty());
}

TYPED_TEST(CookiesContract, AreToldAsTheyWereSet) {
    for (const char* cookie :
         {"session=1; HttpOnly; domain=a.example.test; path=/", // for the one host
          "wide=2; domain=.example.test; path=/x",
          "lasting=3; secure; expires=Fri, 01 Jan 2038 00:00:00 GMT; domain=b.test; path=/",
          "empty=; domain=127.0.0.1; path=/"})
        this->web.setCookie(cookie);
    EXPECT_THAT(this->jar(),
                UnorderedElementsAre("session=1 a.example.test/ HttpOnly", "wide=2 .example.test/x",
                                     "lasting=3 b.test/ secure lasting", "empty= 127.0.0.1/"));
}

TYPED_TEST(CookiesContract, AreTheSameWhenTheyAreSetAsTheyWereTold) {
    this->web.setCookie("a=1; HttpOnly; domain=a.example.test; path=/");
    this->web.setCookie("b=2; secure; domain=.example.test; path=/x");
    std::vector<platform::Cookie> told;
    bool done = false;
    this->web.cookies([&](const auto& cookies) { told = cookies, done = true; });
    ASSERT_TRUE(webtests::waitUntil([&] {
        this->backend.turn();
        return done;
    }));
    const auto before = this->jar();
    this->web.removeAllData();
    for (const auto& cookie : told)
        this->web.setCookie(cookie);
    EXPECT_THAT(this->jar(), testing::UnorderedElementsAreArray(before));
}

TYPED_TEST(CookiesContract, ReplaceThoseWithTheSameNameDomainAndPathOnly) {
    this->web.setCookie("a=1; domain=a.test; path=/");
    this->web.setCookie("a=2; domain=b.test; path=/");
    this->web.setCookie("a=3; domain=a.test; path=/x");
    this->web.setCookie("a=4; domain=a.test; path=/");
    EXPECT_THAT(this->jar(), UnorderedElementsAre("a=4 a.test/", "a=2 b.test/", "a=3 a.test/x"));
}

TYPED_TEST(CookiesContract, AreNotMadeOfTextsThatAreNone) {
    for (const char* text : {"", "no cookie", "=1", "a=1", "a=1; domain=; path=/", ";;;"})
        this->web.setCookie(text);
    EXPECT_THAT(this->jar(), IsEmpty());
}

TYPED_TEST(CookiesContract, AreToldToEachWhoAsks) {
    this->web.setCookie("a=1; domain=a.test; path=/");
    std::vector<std::size_t> told;
    for (int asked = 0; asked < 3; ++asked)
        this->web.cookies([&](const auto& cookies) { told.push_back(cookies.size()); });
    EXPECT_TRUE(webtests::waitUntil([&] {
        this->backend.turn();
        return told.size() == 3;
    }));
    EXPECT_THAT(told, ElementsAre(1, 1, 1));
}

TYPED_TEST(CookiesContract, AreGoneWhenAllDataIsRemoved) {
    this->web.setCookie("a=1; domain=a.test; path=/");
    ASSERT_THAT(this->jar(), ElementsAre("a=1 a.test/"));
    this->web.removeAllData();
    EXPECT_THAT(this->jar(), IsEmpty());
}

TYPED_TEST(CookiesContract, AreGoneAlsoWhenTheyWereSetJustBefore) {
    this->web.setCookie("a=1; domain=a.test; path=/");
    this->web.removeAllData();
    EXPECT_THAT(this->jar(), IsEmpty());
}

} // namespace
