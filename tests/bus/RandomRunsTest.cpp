#include "bus/RandomLines.h"
#include "testing/Child.h"
#include "testing/TempFolder.h"
#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

namespace client {
namespace {

/// A user without a desktop.
struct Nowhere {
    testing_support::TempFolder folder;
    support::Environment environment{{"PATH", std::getenv("PATH")},
                                     {"HOME", folder.path()},
                                     {"XDG_RUNTIME_DIR", folder.path()},
                                     {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"}};

    /// Runs it, and returns whether it was understood.
    bool check(const std::string& program, std::vector<std::string> line) const {
        line.front() = desktop::programs() + "/" + program;
        support::ChildProcess child({.command = line, .environment = environment});
        const auto status = child.wait();
        const std::string errors = child.errors();
        EXPECT_TRUE(status && *status >= 0 && *status <= 5) << status.value_or(-1) << errors;
        if (status != 2) return true;
        EXPECT_EQ(child.output(), "");
        EXPECT_EQ(std::ranges::count(errors, '\n'), 1) << errors;
        EXPECT_TRUE(errors.ends_with('\n'));
        EXPECT_TRUE(std::ranges::none_of(errors.substr(0, errors.size() - 1), isControl)) << errors;
        return false;
    }
    static bool isControl(unsigned char letter) { return letter < ' ' || letter == 0x7f; }
};

TEST(RandomRuns, OfTheExecutablesAreRefusedInOneLineWithTheStatusForIt) {
    constexpr long usual = 150;
    const long count = fromEnvironment("PALISOR_RANDOM_RUNS", usual);
    Lines lines(static_cast<unsigned>(fromEnvironment("PALISOR_RANDOM_SEED", 1)));
    const Nowhere nowhere;
    long understood = 0;
    for (long index = 0; index < count && !testing::Test::HasFailure(); ++index) {
        const auto line = lines.next();
        SCOPED_TRACE(testing::PrintToString(line));
        for (const char* program : {"palisor", "palisor-doctor"})
            understood += nowhere.check(program, line) ? 1 : 0;
    }
    EXPECT_GT(understood, 2 * count / 50);
    EXPECT_LT(understood, 2 * count * 9 / 10);
}

} // namespace
} // namespace client
