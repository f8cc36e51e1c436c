#include "doctor/Report.h"
#include "platform/json/Parser.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

namespace doctor {
namespace {

struct DoctorsReport : testing::Test {
    DoctorsReport() {
        ::setenv("HOME", "/somewhere/wilhelmina", 1);
        ::setenv("USER", "wilhelmina", 1);
        ::setenv("LOGNAME", "wilhelmina", 1);
    }
    Report report{"palisor", "Palisor", "1.0", {}};
};

TEST_F(DoctorsReport, EndsWithTheVerdict) {
    report.findings = {{.key = "a", .says = "is there"},
                       {.key = "b", .level = Level::note, .says = "is odd", .mend = "look"}};
    EXPECT_EQ(asText(report), "a: OK, is there\n"
                              "b: note, is odd. To mend it: look\n"
                              "All is well: Palisor can do all that it should here\n");
    report.findings.push_back({.key = "c", .level = Level::trouble, .says = "is gone"});
    EXPECT_TRUE(asText(report).ends_with("c: TROUBLE, is gone\n"
                                         "Not well: 1 trouble for Palisor, see above\n"));
    EXPECT_FALSE(isWell(report));
}

TEST_F(DoctorsReport, OfARescueSaysThatNothingWasLeft) {
    EXPECT_EQ(asRescueText(report), "Nothing to rescue: nothing was left behind\n");
}

TEST_F(DoctorsReport, TellsNobodyWhoTheUserIs) {
    EXPECT_EQ(withoutPrivateThings("/somewhere/wilhelmina/.config/a.plist is whole"),
              "~/.config/a.plist is whole");
    EXPECT_EQ(withoutPrivateThings("/home/karl/bin/palisor, which"), ".../palisor, which");
    EXPECT_EQ(withoutPrivateThings("/data/w/x.desktop starts /srv/y/palisor"),
              ".../x.desktop starts .../palisor");
    EXPECT_EQ(withoutPrivateThings("starts /usr/local/bin/palisor and/or /opt/p/bin/palisor"),
              "starts /usr/local/bin/palisor and/or /opt/p/bin/palisor");
    EXPECT_EQ(withoutPrivateThings("~/a /"), "~/a /");
    EXPECT_EQ(withoutPrivateThings("of wilhelmina's"), "of (user)'s");
    EXPECT_EQ(withoutPrivateThings("wilhelminas"), "wilhelminas") << "another word";
    char host[256] = {};
    ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
    EXPECT_EQ(withoutPrivateThings("on " + std::string(host) + ":0"), "on (host):0");
}

TEST_F(DoctorsReport, IsJsonWithStableKeys) {
    report.findings = {{.key = "tray",
                        .level = Level::trouble,
                        .says = "no \"tray\" in /somewhere/wilhelmina",
                        .mend = "make one",
                        .privately = " (process 12)"}};
    const auto value = platform::json::Parser().parse(asJson(report));
    ASSERT_TRUE(value);
    const auto is = [](const platform::JsonValue* found, const std::string& text) {
        return found != nullptr && found->held == decltype(found->held)(text);
    };
    EXPECT_TRUE(is(value->member("product"), "palisor"));
    EXPECT_TRUE(is(value->member("version"), "1.0"));
    ASSERT_NE(value->member("well"), nullptr);
    EXPECT_FALSE(std::get<bool>(value->member("well")->held));
    const auto& checks = std::get<platform::JsonValue::List>(value->member("checks")->held);
    ASSERT_EQ(checks.size(), 1U);
    EXPECT_TRUE(is(checks[0].member("key"), "tray"));
    EXPECT_TRUE(is(checks[0].member("level"), "trouble"));
    EXPECT_TRUE(is(checks[0].member("says"), "no \"tray\" in ~"));
    EXPECT_TRUE(is(checks[0].member("mend"), "make one"));
}

} // namespace
} // namespace doctor
