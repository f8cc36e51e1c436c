#include "testing/gnome/ShellWitness.h"

#include <cstdio>
#include <stdexcept>

namespace support {

ShellWitness::ShellWitness(const PrivateShell& watched, const Area& inside) : shell(watched) {
    const auto text = [](int value) { return std::to_string(value); };
    shell.run("(() => { const w = globalThis.witness = {motions: 0, outside: 0, depth: 0, spent: 0,"
              "  since: 0, left: 0};"
              "const tracker = " +
              std::string(cursorTracker) +
              ";"
              "w.look = () => { const now = GLib.get_monotonic_time();"
              "  const [x, y] = global.get_pointer();"
              "  const depth = Math.max(0, " +
              text(inside.x) + " - x, x - " + text(inside.x + inside.width - 1) + ", " +
              text(inside.y) + " - y, y - " + text(inside.y + inside.height - 1) +
              ");"
              "  if (w.since) w.spent += now - w.since;"
              "  w.since = depth > 0 ? now : 0;"
              "  if (depth > 0) w.left ||= now;"
              "  w.depth = Math.max(w.depth, depth); };"
              "const id = tracker.connect('position-invalidated',"
              "  () => { w.motions += 1; w.look(); if (w.since) w.outside += 1; });"
              "w.end = () => tracker.disconnect(id); })()");
}

ShellWitness::~ShellWitness() {
    try {
        shell.run("witness.end()");
    } catch (const std::runtime_error&) {
        // The shell has gone.
    }
}

ShellWitness::Report ShellWitness::report() const {
    const std::string told =
        shell.run("(() => { const w = witness; if (w.since) w.look();"
                  "return [w.motions, w.outside, w.depth, w.spent, w.left]; })()");
    Report report;
    double spent = 0, left = 0;
    if (std::sscanf(told.c_str(), "[%ld,%ld,%d,%lf,%lf", &report.motions, &report.outside,
                    &report.depth, &spent, &left) != 5)
        throw std::runtime_error("no report: " + told);
    report.seconds = spent / 1e6;
    // The shell's clock is that of this process.
    report.left = Clock::time_point(std::chrono::microseconds(static_cast<long>(left)));
    return report;
}

} // namespace support
