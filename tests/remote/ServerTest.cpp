#include "remote/Exchange.h"
#include "testing/KeptLog.h"

#include <gmock/gmock.h>

// The launch against a real server of HTTPS, with an authority of its own.

namespace palisor {
namespace {

using support::HttpsServer;
using support::TestAuthority;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The program has started once, quietly, with nothing of the reply applied.
void expectPlainStart(Exchange& exchange) {
    EXPECT_EQ(exchange.starts(), 1U);
    EXPECT_EQ(exchange.effects({"log"}), logOfAPlainStart);
    EXPECT_THAT(exchange.effects({"alert", "openURL", "loginItem", "exit"}), IsEmpty());
    EXPECT_FALSE(exchange.app.otherApps);
    EXPECT_EQ(exchange.app.allowRate, 0);
}

TEST(ActionServer, IsAskedOnceForEverythingInTheQueryAndTakesNothingFromACache) {
    const TestAuthority authority;
    HttpsServer server(authority, "reply", R"({"otherApps":"1","allowRate":"1"})");
    Exchange exchange(authority, server);
    exchange.platform.system.setMachineModel("Model 9 \"x\" è");
    exchange.launch();
    const std::string asked = server.request();
    EXPECT_THAT(asked, HasSubstr("got GET /app/mac_utilities/action.php?app=8&ver=1.0&device=Model"
                                 "%209%20%22x%22%20%C3%A8&lingua=en&uniqueID=00000000-0000-0000-"
                                 "0000-000000000000&univoke=2026/01/02-03:04:05&OS=10.15.7&"
                                 "monitors=2&locale=US HTTP/1.1\n"));
    EXPECT_EQ(asked.find("got GET"), asked.rfind("got GET"));
    EXPECT_THAT(asked, AllOf(HasSubstr("Cache-Control: no-cache"), HasSubstr("Pragma: no-cache")));
    EXPECT_TRUE(exchange.app.otherApps);
    EXPECT_EQ(exchange.app.allowRate, 1);
    EXPECT_EQ(exchange.starts(), 1U);
    EXPECT_EQ(exchange.effects({"log"}), logOfAPlainStart);
    EXPECT_THAT(exchange.effects({"alert"}), IsEmpty());
}

TEST(ActionServer, AsksAQuestionWhoseAnswersLeadOn) {
    struct Row {
        int answer;
        Lines effects;
        std::size_t starts;
    };
    const std::string alert = R"(alert {"message":"Palisor 1.0","informative":"%s%naaaaabbbbbb%@",)"
                              R"("buttons":["Update","Later"],"accessory":null,"code":)";
    const Row rows[] = {
        {1,
         {alert + "1}", R"(openURL {"url":"https://one.invalid/"})",
          R"(loginItem {"identifier":"com.tamberlo.palisorHelper","enabled":false})",
          "terminate {}", R"(exit {"status":0})"},
         0},
        {0, {alert + "0}"}, 1},
        {-1, {alert + "-1}"}, 0}};
    const TestAuthority authority;
    const HttpsServer server(authority, "reply",
                             R"({"question":"%s%n%@%@%@","answer_1":"Update","answer_2":"Later",)"
                             R"("event_1":"https://one.invalid/","event_2":"NULL","active_1":0,)"
                             R"("active_2":"YES","otherApps":1,"allowRate":200})");
    for (const Row& row : rows) {
        Exchange exchange(authority, server);
        exchange.platform.alerts.setAnswers({row.answer});
        exchange.launch();
        EXPECT_EQ(exchange.effects({"alert", "openURL", "loginItem", "terminate", "exit"}),
                  row.effects);
        EXPECT_EQ(exchange.starts(), row.starts);
        EXPECT_TRUE(exchange.app.otherApps);
        EXPECT_EQ(exchange.app.allowRate, -56);
    }
}

TEST(ActionServer, MayAnswerWithAnyStatusAndFromElsewhereOverHttps) {
    const TestAuthority authority;
    for (const char* behaviour : {"failure", "redirect", "endless"}) {
        const HttpsServer server(authority, behaviour, R"({"otherApps":"1"})");
        Exchange exchange(authority, server);
        exchange.launch();
        EXPECT_TRUE(exchange.app.otherApps) << behaviour;
        EXPECT_EQ(exchange.starts(), 1U) << behaviour;
    }
}

TEST(ActionServer, ThatFailsAtOnceLeavesAPlainStart) {
    const TestAuthority authority;
    for (const char* behaviour : {"refuse", "reset", "cut"}) {
        SCOPED_TRACE(behaviour);
        const HttpsServer server(authority, behaviour, R"({"otherApps":"1"})");
        Exchange exchange(authority, server);
        exchange.launch();
        expectPlainStart(exchange);
    }
}

TEST(ActionServer, WhoseCertificateIsNotToBeTrustedLeavesAPlainStart) {
    const std::string reply = R"({"otherApps":"1"})";
    const TestAuthority authority;
    const HttpsServer server(authority, "reply", reply);
    {
        SCOPED_TRACE("signed by nobody that the system knows");
        Exchange exchange("", server.host());
        exchange.launch();
        expectPlainStart(exchange);
    }
    {
        SCOPED_TRACE("by another authority");
        Exchange exchange(TestAuthority().file(), server.host());
        exchange.launch();
        expectPlainStart(exchange);
    }
    {
        SCOPED_TRACE("an authority that cannot be read");
        Exchange exchange("/nowhere/authority.pem", server.host());
        exchange.launch();
        expectPlainStart(exchange);
    }
    const std::pair<const char*, TestAuthority::Options> rows[] = {
        {"for another host", {.name = "elsewhere.invalid"}}, {"expired", {.hasExpired = true}}};
    for (const auto& [what, options] : rows) {
        SCOPED_TRACE(what);
        const TestAuthority own(options);
        const HttpsServer bad(own, "reply", reply);
        Exchange exchange(own, bad);
        exchange.launch();
        expectPlainStart(exchange);
        EXPECT_TRUE(bad.waitFor("failed "));
        EXPECT_THAT(bad.happened(), Not(HasSubstr("got "))) << "nothing is told to it";
    }
}

TEST(ActionServer, IsNotFollowedToAnAddressWithoutTls) {
    const TestAuthority authority;
    const HttpsServer server(authority, "plain", R"({"otherApps":"1"})");
    Exchange exchange(authority, server);
    exchange.launch();
    expectPlainStart(exchange);
    EXPECT_THAT(server.happened(), Not(HasSubstr("plain contacted")));
}

TEST(ActionServer, MaySendAMebibyteAndNotAByteMore) {
    const TestAuthority authority;
    std::string body = R"({"otherApps":"1"})";
    body.resize(platform::Http::longestBody, ' ');
    for (const char* behaviour : {"reply", "endless"}) {
        SCOPED_TRACE(behaviour);
        const HttpsServer server(authority, behaviour, body);
        {
            Exchange exchange(authority, server);
            exchange.launch();
            EXPECT_TRUE(exchange.app.otherApps);
        }
        server.setBody(body + ' ');
        Exchange exchange(authority, server);
        exchange.launch();
        expectPlainStart(exchange);
    }
}

TEST(ActionServer, WhoseReplyIsNoObjectOfJsonLeavesAPlainStart) {
    using namespace std::string_literals;
    const TestAuthority authority;
    const std::string bodies[] = {"",
                                  " ",
                                  "NULL",
                                  "\t\r\n",
                                  "<html></html>",
                                  "[]",
                                  "[{}]",
                                  "\"text\"",
                                  "1",
                                  "{\"otherApps\":1",
                                  "{}{}",
                                  "{'a':1}",
                                  "\xff\xfe{}",
                                  "{\"otherApps\":\"\xc3\"}",
                                  "{}\0"s,
                                  "{\"a\":NaN}",
                                  "{\"a\":1e999}"};
    const HttpsServer server(authority, "reply");
    for (const auto& body : bodies) {
        SCOPED_TRACE(body);
        server.setBody(body);
        Exchange exchange(authority, server);
        exchange.launch();
        expectPlainStart(exchange);
    }
}

TEST(ActionServer, MayFillAnyPlaceWithAnyType) {
    const TestAuthority authority;
    const HttpsServer server(authority, "reply");
    for (const std::string value : {"null", "true", "[]", "[1]", "{}", R"({"a":[]})"}) {
        SCOPED_TRACE(value);
        std::string body = "{";
        for (const char* name : {"otherApps", "allowRate", "question", "answer_1", "answer_2",
                                 "event_1", "event_2", "active_1", "active_2"})
            body += std::string(body.size() == 1 ? "" : ",") + '"' + name + "\":" + value;
        server.setBody(body + "}");
        Exchange exchange(authority, server);
        exchange.launch();
        expectPlainStart(exchange);
    }
}

TEST(ActionServer, UnderAReservedNameIsNotLookedFor) {
    for (const char* host : {"service.tamberlo.invalid", "a.INVALID.", "x.invalid:443", "", " ",
                             ".", ":443", "user@", "user@:443"})
        EXPECT_TRUE(platform::linux::asksNobody("https://" + std::string(host) + "/a?b=c")) << host;
    for (const char* url : {"https://", "https://?b=c", "https://#"})
        EXPECT_TRUE(platform::linux::asksNobody(url)) << url;
    EXPECT_TRUE(platform::linux::asksNobody("email:support@tamberlo.invalid"));
    EXPECT_FALSE(platform::linux::asksNobody("email:x.invalid@example.org?subject=a@b.invalid"));
    for (const char* url :
         {"https://localhost/x.invalid", "https://invalid.example/", "https://x.invalid@localhost/",
          "https://localhost/?a=https://b.invalid/", "x.invalid"})
        EXPECT_FALSE(platform::linux::asksNobody(url)) << url;
    for (const char* host : {"service.tamberlo.invalid", "", " "}) {
        Exchange exchange("", host);
        exchange.launch();
        expectPlainStart(exchange);
    }
}

// The library would otherwise look for the first word of the path, which is a host in some
// networks.
TEST(ActionServer, WithoutANameIsNotLookedForUnderAnother) {
    testing_support::KeptLog log;
    platform::linux::CurlHttp web(log);
    for (const char* url :
         {"https:///localhost/", "https:///localhost:1/app", "https:// /localhost"})
        EXPECT_EQ(web.get({.url = url}).error, "there is no host, or its name is reserved") << url;
}

// The program asks for its ten seconds; the test has them pass sooner.
TEST(ActionServer, ThatTakesTooLongIsGivenUpAtTheLimitOfTenSeconds) {
    constexpr double limit = 0.5;
    const TestAuthority authority;
    for (const char* behaviour : {"mute", "silence", "drip"}) {
        SCOPED_TRACE(behaviour);
        const HttpsServer server(authority, behaviour);
        Exchange exchange(authority, server);
        exchange.http.shorter = limit;
        exchange.launch();
        expectPlainStart(exchange);
        EXPECT_EQ(exchange.http.asked.timeout, 10);
        EXPECT_GE(exchange.took.count(), limit - 0.01) << "curl counts in milliseconds";
    }
}

} // namespace
} // namespace palisor
