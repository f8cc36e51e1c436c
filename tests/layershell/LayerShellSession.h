#pragma once

#include "testing/desktop/Product.h"
#include "testing/layershell/PrivateCompositor.h"
#include "testing/sway/SwayKeys.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

// The program itself on each compositor that has layers, with a mouse for input, and layers and
// pictures for evidence.

namespace desktop {

using support::PrivateCompositor;
using support::SwayHand;
using support::Witness;

class LayerShell : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateCompositor::missing(GetParam())) GTEST_SKIP() << *reason;
        compositor.emplace(GetParam());
        hand.emplace(compositor->socket());
        moveTo(960, 540);
    }

    void moveTo(int x, int y) {
        hand->place(x, y, PrivateCompositor::leftWidth + PrivateCompositor::rightWidth,
                    PrivateCompositor::leftHeight);
    }

    /// Starts the product and returns when everything is in place: the other monitor is dark.
    void start(const Setting& setting = {}) {
        Entries entries = setting.more;
        entries.insert({{"ATTIVO", flag(setting.active)},
                        {"VELOCITY_OPTION", flag(setting.pushOption)},
                        {"VELOCITY", number(setting.velocity)},
                        {"OTHERS_DARK", number(setting.othersDark)}});
        entries.merge(pastTheFirstStart());
        std::ofstream(compositor->configFolder() + "/com.tamberlo." + setting.product + ".plist")
            << propertyList(entries);
        constexpr std::uint32_t white = 0xffffffff;
        for (const std::size_t output : {0, 1})
            backgrounds.push_back(std::make_unique<Witness>(
                compositor->socket(), output, Witness::Where::belowEverything, white));
        product = setting.product;
        program = run({"--verbose"});
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
        const bool darkens = setting.active && product == "palisor" && setting.othersDark > 0;
        ASSERT_TRUE(darkens ? darkSoon(2) : brightSoon()) << program->errors();
    }

    std::unique_ptr<support::ChildProcess> run(const std::vector<std::string>& arguments) const {
        return compositor->spawn(programs() + "/" + product, arguments);
    }
    /// What a command prints that must succeed.
    std::string told(const std::vector<std::string>& arguments) const {
        const auto command = run(arguments);
        EXPECT_EQ(command->wait(), 0) << command->errors();
        return command->output();
    }

    bool isDark(int output) const { return compositor->brightness(output) < 128; }
    /// That monitor alone, numbered from 1 on.
    bool darkSoon(int output) const {
        return waitUntil([&] { return isDark(output) && !isDark(3 - output); });
    }
    bool brightSoon() const {
        return waitUntil([&] { return !isDark(1) && !isDark(2); });
    }
    /// Ends the program when it has seen to what came, so that nothing of it lies over the
    /// monitors.
    bool cursorIsOn(std::size_t output) {
        told({"status"});
        program->signal(SIGKILL);
        program->wait();
        const Witness there(compositor->socket(), output, Witness::Where::aboveEverything, 0);
        return waitUntil([&] { return there.report().isOver; });
    }

    std::optional<PrivateCompositor> compositor;
    std::optional<SwayHand> hand;
    std::vector<std::unique_ptr<Witness>> backgrounds;
    std::string product = "palisor"; ///< that was started last
    std::unique_ptr<support::ChildProcess> program;
};

} // namespace desktop
