#include "bus/RandomCalls.h"
#include "bus/Stage.h"
#include "program/client/Seen.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

// The same of the program itself. PALISOR_RANDOM_CALLS has more than the usual number sent.

namespace desktop {
namespace {

struct RandomProgram : BusStage, testing::Test {
    /// What can be read of it, but for the time that passes by itself.
    std::string look() {
        client::Seen seen;
        const auto all = call(
            "GetAll",
            [](sd_bus_message* question) {
                sd_bus_message_append(question, "s", "com.tamberlo.Product1");
            },
            "org.freedesktop.DBus.Properties");
        if (!all) return "nothing: " + error;
        (void)seen.take(all.get());
        seen.freed = seen.freed > 0 ? 1 : 0;
        std::string text = seen.text();
        const auto list = call("ListSettings");
        if (!list || sd_bus_message_enter_container(list.get(), 'a', "(ssssbs)") <= 0)
            return "no settings: " + error;
        const char *key, *readable, *kind, *value, *meaning;
        int isDefault = 0;
        while (sd_bus_message_read(list.get(), "(ssssbs)", &key, &readable, &kind, &value,
                                   &isDefault, &meaning) > 0)
            text += std::string(readable) + " = " + value + (isDefault ? "\n" : " (changed)\n");
        return text;
    }

    long residentPages() const {
        std::ifstream file("/proc/" + std::to_string(program->pid()) + "/statm");
        long whole = 0, resident = 0;
        file >> whole >> resident;
        return resident;
    }

    /// Those that last are others' to test.
    static bool isSent(sd_bus_message* question) {
        const std::string_view member = sd_bus_message_get_member(question);
        return member != "Quit" && member != "Report" && member != "ShowMenu" &&
               !member.starts_with("Activate") && member != "Open" &&
               sd_bus_message_get_expect_reply(question) > 0;
    }
};

TEST_F(RandomProgram, AnswersEachCallAndIsAsBeforeWhereItRefuses) {
    start();
    const char* const wished = std::getenv("PALISOR_RANDOM_CALLS");
    const long count = wished != nullptr ? std::atol(wished) : 1'000;
    bus::RandomCalls calls(1, identifier());
    long refused = 0, changes = 0, early = 0;
    std::string before = look();
    for (long index = 0; index < count; ++index) {
        if (index == count / 5) early = residentPages();
        const bus::Message question = calls.next(caller());
        if (!question || !isSent(question.get())) continue;
        SCOPED_TRACE("call " + std::to_string(index));
        bus::Error failed;
        sd_bus_message* reply = nullptr;
        constexpr std::uint64_t limit = 30'000'000;
        const int answered = sd_bus_call(caller(), question.get(), limit, failed.get(), &reply);
        const bus::Message owned(reply);
        ASSERT_NE(answered, -ETIMEDOUT);
        const std::string after = look();
        ASSERT_NE(after.substr(0, 3), "no ") << after;
        if (answered < 0) {
            ++refused;
            ASSERT_EQ(before, after) << failed.name() << ": " << failed.text();
        }
        changes += before == after ? 0 : 1;
        before = after;
    }
    std::printf("%ld refused, %ld changed something, %ld pages more\n", refused, changes,
                residentPages() - early);
    EXPECT_GT(refused, count / 5);
    EXPECT_GT(changes, count / 50) << "or this shows little";
    EXPECT_TRUE(program->running());
    constexpr long mostPages = 2048;
    EXPECT_LT(residentPages() - early, mostPages);
}

} // namespace
} // namespace desktop
