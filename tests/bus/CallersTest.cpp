#include "bus/Stage.h"

#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

// Who may call.

namespace desktop {
namespace {

TEST(Callers, OfAnotherUserAreRefused) {
    if (geteuid() != 0) GTEST_SKIP() << "takes root, to be another user";
    BusStage stage;
    // One that lets every user in.
    const std::string path = stage.desktop.runtimeFolder() / "open-bus";
    const std::string file = stage.desktop.home() / "bus.conf";
    std::ofstream(file) << "<busconfig><type>session</type><listen>unix:path=" << path
                        << "</listen><policy context=\"default\"><allow user=\"*\"/>"
                           "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
                           "<allow own=\"*\"/></policy></busconfig>";
    const support::SessionBus bus(stage.desktop.environment(), file);
    namespace fs = std::filesystem;
    for (fs::path folder = path; folder.has_relative_path(); folder = folder.parent_path())
        fs::permissions(folder,
                        fs::perms::others_exec | fs::perms::others_read | fs::perms::others_write,
                        fs::perm_options::add);
    stage.desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
    stage.start();
    const auto send = [&](std::vector<std::string> before, const char* method) {
        before.insert(before.end(),
                      {"dbus-send", "--session", "--print-reply", "--dest=com.tamberlo.palisor",
                       "/com/tamberlo/palisor", method});
        const std::string command = before.front();
        before.erase(before.begin());
        const auto child = stage.desktop.spawn(command, before);
        child->wait();
        return child->output() + child->errors();
    };
    const std::vector<std::string> nobody = {"setpriv", "--reuid=65534", "--regid=65534",
                                             "--clear-groups"};
    for (const char* method : {"com.tamberlo.Product1.Toggle", "org.freedesktop.Application.Open",
                               "org.freedesktop.DBus.Introspectable.Introspect"})
        EXPECT_THAT(send(nobody, method), testing::HasSubstr("Error.NotTheUser")) << method;
    EXPECT_THAT(send({"env"}, "com.tamberlo.Product1.Toggle"), testing::HasSubstr("boolean false"));
    EXPECT_FALSE(stage.isActive());
}

// The question who calls is under way when the second one comes.
TEST(Callers, HaveTheirFirstCallsAnsweredInTheirOrder) {
    BusStage stage;
    stage.start();
    std::string order;
    struct Slot {
        std::string& order;
        std::string name;
    };
    std::vector<std::unique_ptr<Slot>> slots;
    const auto answered = [](sd_bus_message*, void* own, sd_bus_error*) {
        auto& slot = *static_cast<Slot*>(own);
        slot.order += slot.name;
        return 0;
    };
    constexpr int count = 40;
    std::string expected;
    for (int index = 0; index < count; ++index) {
        slots.push_back(std::make_unique<Slot>(Slot{order, std::to_string(index) + " "}));
        expected += slots.back()->name;
        ASSERT_GE(sd_bus_call_method_async(stage.caller(), nullptr, "com.tamberlo.palisor",
                                           "/com/tamberlo/palisor", "com.tamberlo.Product1",
                                           index % 2 ? "Toggle" : "ListSettings", answered,
                                           slots.back().get(), ""),
                  0);
    }
    ASSERT_TRUE(waitUntil([&] { return order.size() >= expected.size(); }, support::generous,
                          [&](auto) {
                              if (sd_bus_process(stage.caller(), nullptr) == 0)
                                  sd_bus_wait(stage.caller(), 100'000);
                          }));
    EXPECT_EQ(order, expected);
}

} // namespace
} // namespace desktop
