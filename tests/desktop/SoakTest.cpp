#include "testing/desktop/Product.h"
#include "testing/desktop/Watcher.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <optional>
#include <random>

// Everything at once and at random, with an independent watcher. PALISOR_SOAK_SECONDS makes it
// longer than the ten seconds of an ordinary run, PALISOR_SOAK_SEED another one.

namespace desktop {
namespace {

long fromEnvironment(const char* name, long otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atol(text) : otherwise;
}

/// The monitor that the program is anchored on: the one without a dark window.
std::optional<std::size_t> home(const Product& product) {
    std::optional<std::size_t> bare;
    for (std::size_t i = 0; i < product.layout.size(); ++i) {
        if (product.isCovered(i)) continue;
        if (bare) return std::nullopt;
        bare = i;
    }
    return bare;
}

class Soak {
  public:
    Soak(Product& tried, unsigned seed) : product(tried), random(seed) {}

    void step() {
        switch (number(0, 39)) {
        case 0:
            changeLayout();
            break;
        case 1:
            restartCompositor();
            break;
        case 2:
            restartWindowManager();
            break;
        case 3:
        case 4:
            product.hand.click(number(1, 5));
            break;
        case 5:
            product.hand.type(number(0, 1) == 0 ? support::key::leftShift : 'x');
            break;
        case 6:
            dragAndPush();
            break;
        default:
            move();
        }
    }

    int number(int low, int high) { return std::uniform_int_distribution(low, high)(random); }

  private:
    void move() {
        constexpr int rates[] = {125, 500, 1000, 4000};
        const int hz = rates[number(0, 3)];
        const int dx = number(-40, 40), dy = number(-25, 25);
        watched([&] { product.hand.push(dx, dy, hz / 20, hz); });
    }

    void dragAndPush() {
        const int dx = number(0, 1) == 0 ? 9 : -9, dy = number(-1, 1);
        watched([&] {
            product.hand.pressButton();
            product.hand.push(dx, dy, 60, 1000);
            product.hand.releaseButton();
        });
    }

    void watched(const std::function<void()>& act) {
        // A change may be followed by another one, for which the dark windows are made anew.
        std::optional<std::size_t> monitor;
        ASSERT_TRUE(waitUntil([&] {
            monitor = home(product);
            return monitor && product.cursorIsOn(*monitor);
        }));
        support::Watcher watcher(product.desktop.display(), product.monitor(*monitor));
        act();
        EXPECT_EQ(watcher.finish().farthestOutside, 0);
    }

    void changeLayout() {
        static const char* const layouts[] = {
            "1920x1080+0+0,1280x1024+1920+0", "1280x1024+0+0,1920x1080+1280+0",
            "1920x1080+1280+0*,1280x1024+0+0", "1280x1024+0+0,1280x1024+1280+0"};
        const char* next = layouts[number(0, 3)];
        product.desktop.setLayout(next);
        product.layout = support::parseLayout(next);
        expectAnchored();
    }

    void restartCompositor() {
        product.desktop.stopCompositor();
        product.desktop.startCompositor();
        expectAnchored();
    }

    void restartWindowManager() {
        product.desktop.stopWindowManager();
        product.desktop.startWindowManager("openbox");
        expectAnchored();
    }

    /// Waits until the program has its screen again after a change.
    void expectAnchored() {
        EXPECT_TRUE(waitUntil([&] {
            const auto monitor = home(product);
            return monitor && product.cursorIsOn(*monitor);
        }));
    }

    Product& product;
    std::mt19937 random;
};

TEST(ServerHold, LastsThroughWhateverHappens) {
    const auto seed = static_cast<unsigned>(fromEnvironment("PALISOR_SOAK_SEED", 1));
    const auto length = std::chrono::seconds(fromEnvironment("PALISOR_SOAK_SECONDS", 10));
    Product product("1920x1080+0+0,1280x1024+1920+0");
    if (!product.desktop.canPlugOutputs()) GTEST_SKIP() << "needs Xorg with the dummy driver";
    product.desktop.startWindowManager("openbox");
    product.desktop.startCompositor();
    const auto windowsBefore = product.eye.windows().size();
    product.start();
    Soak soak(product, seed);
    const auto end = support::Clock::now() + length;
    while (support::Clock::now() < end && !testing::Test::HasFailure())
        soak.step();
    EXPECT_TRUE(product.program->running()) << product.program->errors();

    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_LE(product.eye.windows().size(), windowsBefore + 1);
    product.desktop.stopWindowManager(); // a click may have opened its menu, which grabs
    const support::XConnection other(product.desktop.display());
    EXPECT_TRUE(other.grabPointer()) << "nobody grabs the pointer";
    // From one monitor through the inner edge to the other.
    product.hand.moveTo(1270, 500);
    product.hand.push(100, 0, 8, 1000);
    EXPECT_GE(product.eye.cursor().x, 2060) << "no barrier is left";
}

} // namespace
} // namespace desktop
