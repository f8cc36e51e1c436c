#include "testing/gnome/ShellMonitors.h"

#include <cstdio>
#include <stdexcept>

namespace support {

namespace {

std::string asScript(const std::vector<ShellMonitor>& monitors) {
    std::string text = "[";
    for (const ShellMonitor& monitor : monitors) {
        char place[96];
        std::snprintf(place, sizeof place, "[%d, %d, %.4f, [", monitor.x, monitor.y, monitor.scale);
        text += place;
        for (const int output : monitor.outputs)
            text += std::to_string(output) + ", ";
        text += "]], ";
    }
    return text + "]";
}

} // namespace

// Over the shell's own bus, as its settings do it. They cannot be waited for in there.
void arrange(const PrivateShell& shell, const std::vector<ShellMonitor>& monitors) {
    shell.run(
        "(() => { globalThis.arranged = '';"
        "const name = 'org.gnome.Mutter.DisplayConfig', path = '/org/gnome/Mutter/DisplayConfig';"
        "const call = (method, values, then) => Gio.DBus.session.call(name, path, name, method,"
        "  values, null, 0, -1, null, (bus, reply) => {"
        "    try { then(bus.call_finish(reply)); }"
        "    catch (error) { globalThis.arranged = error.message; } });"
        "call('GetCurrentState', null, reply => {"
        "  const [serial, outputs] = reply.recursiveUnpack();"
        "  outputs.sort((a, b) => a[0][0].localeCompare(b[0][0], 'en', {numeric: true}));"
        "  const lit = i => [outputs[i][0][0], outputs[i][1][0][0], {}];"
        "  call('ApplyMonitorsConfig', new GLib.Variant('(uua(iiduba(ssa{sv}))a{sv})', [serial, "
        "1," +
        asScript(monitors) +
        "  .map(([x, y, scale, of], i) => [x, y, scale, 0, i === 0, of.map(lit)]), {}]),"
        "  () => { globalThis.arranged = 'done'; }); }); })()");
    std::string told;
    const bool isTold = waitUntil([&] { return (told = shell.run("arranged")) != "\"\""; });
    if (!isTold || told != "\"done\"") throw std::runtime_error("monitors: " + told);
    if (!waitUntil([&] { return areas(shell).size() == monitors.size(); }))
        throw std::runtime_error("the monitors do not come");
}

std::vector<Area> areas(const PrivateShell& shell) {
    const std::string told =
        shell.run("Main.layoutManager.monitors.map(m => [m.x, m.y, m.width, m.height])");
    std::vector<Area> all;
    const char* at = told.c_str();
    Area area;
    int length = 0;
    while (std::sscanf(++at, "[%d,%d,%d,%d]%n", &area.x, &area.y, &area.width, &area.height,
                       &length) == 4) {
        all.push_back(area);
        at += length;
    }
    return all;
}

} // namespace support
