#include "testing/SessionBus.h"
#include "testing/desktop/Product.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

// One program a product, user and display, whatever the session bus does.

namespace desktop {
namespace {

using support::SessionBus;

support::PrivateDesktop::Options withoutBus() {
    support::PrivateDesktop::Options options;
    options.bus = false;
    return options;
}

struct OneInstance : testing::Test {
    Product product{withoutBus()};

    std::string busPath() const { return product.desktop.runtimeFolder() / "a-bus"; }
    void nameTheBus() {
        product.desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + busPath());
    }
    /// A bus at that path, whatever lay there.
    std::unique_ptr<SessionBus> startBus() {
        std::filesystem::remove(busPath());
        const std::string file = product.desktop.home() / "bus.conf";
        std::ofstream(file)
            << "<busconfig><type>session</type><listen>unix:path=" << busPath()
            << "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
               "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy>"
               "</busconfig>";
        return std::make_unique<SessionBus>(product.desktop.environment(), file);
    }
    void expectASecondStartShowsTheMenu(Product& first) const {
        const auto second = first.run();
        EXPECT_EQ(second->wait(), 0);
        EXPECT_TRUE(second->waitForText("running already")) << second->errors();
        EXPECT_TRUE(first.waitForMenus(1)) << first.program->errors();
        EXPECT_TRUE(first.program->running());
    }
};

TEST_F(OneInstance, WithoutABusASecondStartShowsTheMenuOfTheFirst) {
    product.start();
    expectASecondStartShowsTheMenu(product);
}

// Two entries of autostart may start it at one login.
TEST_F(OneInstance, AStartByTheSessionThatFindsTheProgramRunningOpensNoMenu) {
    nameTheBus();
    const auto bus = startBus();
    product.start();
    for (const bool lock : {true, false}) {
        SCOPED_TRACE(lock ? "told by the lock" : "told by the bus");
        // Without the folder for the lock the second start asks on the bus.
        for (const char* folder : {"XDG_RUNTIME_DIR", "TMPDIR"})
            if (!lock) product.desktop.setVariable(folder, "/nonexistent");
        const auto second = product.run({"--at-login"});
        EXPECT_EQ(second->wait(), 0);
        EXPECT_TRUE(second->waitForText("running already")) << second->errors();
        // What it might have asked for would be done before this.
        EXPECT_TRUE(product.isUpSoon());
        EXPECT_TRUE(product.menus().empty());
    }
    expectASecondStartShowsTheMenu(product);
}

TEST_F(OneInstance, AKilledProgramIsNotInTheWayOfTheNextOne) {
    product.start();
    product.program->signal(SIGKILL);
    product.program->wait();
    product.start();
    EXPECT_TRUE(product.program->running());
}

TEST_F(OneInstance, TheNameIsClaimedAgainOnABusThatComesBack) {
    nameTheBus();
    auto bus = startBus();
    product.start();
    ASSERT_TRUE(product.desktop.isOnTheBusSoon(product.identifier()));
    bus.reset();
    expectASecondStartShowsTheMenu(product);
    product.hand.type(support::key::escape);
    ASSERT_TRUE(product.waitForMenus(0));
    for (int restart = 0; restart < 2; ++restart) {
        bus.reset();
        bus = startBus();
        EXPECT_TRUE(product.desktop.isOnTheBusSoon(product.identifier()))
            << product.program->errors();
    }
    EXPECT_TRUE(product.isUpSoon()) << "its object is there as well";
}

/// Takes connections and never says anything.
class SilentBus {
  public:
    explicit SilentBus(const std::string& path) : server(::socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        std::strncpy(place.sun_path, path.c_str(), sizeof place.sun_path - 1);
        if (::bind(server.get(), reinterpret_cast<sockaddr*>(&place), sizeof place) != 0 ||
            ::listen(server.get(), 20) != 0)
            throw std::runtime_error("no socket at " + path);
    }

  private:
    support::Descriptor server;
};

TEST_F(OneInstance, ABusThatDoesNotAnswerHoldsTheStartUpByTwoSeconds) {
    nameTheBus();
    auto silent = std::make_unique<SilentBus>(busPath());
    const auto before = support::Clock::now();
    product.start();
    // The library would wait for 25 seconds, and more than once.
    EXPECT_LT(support::Clock::now() - before, std::chrono::seconds(12));
    EXPECT_TRUE(product.program->waitForText("does not answer")) << product.program->errors();
    silent.reset();
    const auto bus = startBus();
    EXPECT_TRUE(product.desktop.isOnTheBusSoon(product.identifier())) << product.program->errors();
}

TEST_F(OneInstance, EveryDisplayHasOneAlsoWhereTheyShareABus) {
    nameTheBus();
    const auto bus = startBus();
    product.start();
    Product other(withoutBus());
    for (const char* shared : {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"})
        other.desktop.setVariable(shared, product.desktop.environment().at(shared));
    other.start();
    expectASecondStartShowsTheMenu(other);
    EXPECT_TRUE(product.menus().empty());
    expectASecondStartShowsTheMenu(product);
    product.program->end();
    EXPECT_TRUE(product.desktop.isOnTheBusSoon(product.identifier())) << "the other one has it";
    product.start();
}

} // namespace
} // namespace desktop
