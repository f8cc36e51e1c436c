#include "platform/qt/web/WebModule.h"
#include "testing/KeptLog.h"

#include <gmock/gmock.h>

// The program where the web engine is not installed.

namespace {

using platform::qt::WebModule;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class MissingEngine : public testing::TestWithParam<const char*> {
  protected:
    testing_support::KeptLog log;
    WebModule web{GetParam(), log};
};

INSTANTIATE_TEST_SUITE_P(, MissingEngine,
                         testing::Values("/nonexistent/web-engine.so", NOT_A_MODULE));

TEST_P(MissingEngine, SaysOnceWhatToInstall) {
    web.removeAllData();
    web.setCookie("a=1; domain=a.test; path=/");
    EXPECT_EQ(web.open({}), nullptr);
    EXPECT_THAT(log.lines,
                ElementsAre(AllOf(HasSubstr("libqt6webenginewidgets6"), HasSubstr("web-engine.so"),
                                  testing::Not(HasSubstr("\n")))));
}

TEST_P(MissingEngine, TellsNoCookies) {
    bool told = false;
    web.cookies([&told](const auto&) { told = true; });
    EXPECT_FALSE(told);
}

TEST_P(MissingEngine, IsNotLookedForUntilItIsUsed) {
    EXPECT_THAT(log.lines, testing::IsEmpty());
    web.close();
    EXPECT_THAT(log.lines, testing::IsEmpty());
}

} // namespace
