#include "testing/gnome/ShellWalk.h"

#include <algorithm>
#include <array>
#include <linux/input-event-codes.h>
#include <random>
#include <stdexcept>
#include <utility>

namespace support {

namespace {

class Stray {
  public:
    Stray(const PrivateShell& s, ShellHand& h, const Area& area, unsigned seed)
        : shell(s), hand(h), inside(area), chance(seed), witness(s, area) {}

    void leg() {
        constexpr std::array speeds{0.4, 1.0, 3.0, 10.0, 30.0, 300.0, 4000.0};
        const double most = speeds[upTo(speeds.size())];
        const double dx = most * between(-1, 1), dy = most * between(-1, 1);
        changeButton();
        if (upTo(4) == 0) {
            constexpr std::array rates{125, 1000, 8000};
            const int steps = 10 + static_cast<int>(upTo(60));
            hand.push(dx, dy, steps, rates[upTo(rates.size())]);
            walk.steps += steps;
            look(dx, dy);
            return;
        }
        for (auto left = 1 + upTo(40); left > 0; --left) {
            hand.relative(dx, dy);
            ++walk.steps;
            look(dx, dy);
        }
    }

    Walk end() {
        if (held) hand.button(held, false);
        const auto seen = witness.report();
        walk.outside += seen.outside;
        walk.depth = std::max(walk.depth, seen.depth);
        return walk;
    }

    Walk walk;

  private:
    std::size_t upTo(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(chance);
    }
    double between(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(chance);
    }

    void changeButton() {
        if (upTo(3) != 0) return;
        if (held) {
            hand.button(std::exchange(held, 0), false);
            return;
        }
        constexpr std::array buttons{BTN_LEFT, BTN_RIGHT, BTN_MIDDLE};
        hand.button(held = buttons[upTo(buttons.size())], true);
        ++walk.presses;
    }

    void look(double dx, double dy) {
        const auto at = shell.cursor();
        const int right = inside.x + inside.width - 1, bottom = inside.y + inside.height - 1;
        if (at.x == inside.x || at.x == right || at.y == inside.y || at.y == bottom) ++walk.atEdge;
        if (inside.contains(at.x, at.y)) return;
        ++walk.outside;
        if (walk.first.empty())
            walk.first = "step " + std::to_string(walk.steps) + " of (" + std::to_string(dx) +
                         ", " + std::to_string(dy) + ") to (" + std::to_string(at.x) + ", " +
                         std::to_string(at.y) + "), button " + std::to_string(held);
    }

    const PrivateShell& shell;
    ShellHand& hand;
    const Area inside;
    std::mt19937 chance;
    ShellWitness witness;
    int held = 0;
};

/// Closes what a click opens in the panel, and takes no click on what would end the hand.
class ClosedPanel {
  public:
    explicit ClosedPanel(const PrivateShell& s) : shell(s) {
        shell.run("(() => { Main.panel.statusArea.screenSharing.reactive = false;"
                  "const areas = Object.values(Main.panel.statusArea);"
                  "globalThis.closed = areas.filter(area => area.menu?.connect)"
                  "  .map(({menu}) => [menu, menu.connect('open-state-changed',"
                  "    (_menu, isOpen) => { if (isOpen) menu.close(0); })]); })()");
    }
    ~ClosedPanel() {
        try {
            shell.run("closed.forEach(([menu, id]) => menu.disconnect(id))");
        } catch (const std::runtime_error&) {
            // The shell has gone.
        }
    }
    ClosedPanel(const ClosedPanel&) = delete;
    ClosedPanel& operator=(const ClosedPanel&) = delete;

  private:
    const PrivateShell& shell;
};

} // namespace

Walk stray(const PrivateShell& shell, ShellHand& hand, const Area& inside,
           const std::function<bool(const Walk&)>& goesOn, unsigned seed) {
    const ClosedPanel panel(shell);
    Stray one(shell, hand, inside, seed);
    while (goesOn(one.walk))
        one.leg();
    return one.end();
}

} // namespace support
