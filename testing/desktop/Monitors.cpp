#include "testing/desktop/Monitors.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <set>
#include <stdexcept>
#include <sys/uio.h>
#include <xcb/xcbext.h>

namespace support {

namespace {

// 96 dots an inch, the resolution that X servers and toolkits assume.
std::uint32_t millimetres(int pixels) {
    return static_cast<std::uint32_t>(pixels * 254 / 960);
}

std::string modeName(const Area& area) {
    return "test-" + std::to_string(area.width) + "x" + std::to_string(area.height);
}

void check(bool done, const std::string& what) {
    if (!done) throw std::runtime_error("the X server refused: " + what);
}

// Timings with reduced blanking, 60 Hz; the dummy hardware takes any.
xcb_randr_mode_info_t timings(const Area& area, std::size_t nameLength) {
    const auto width = static_cast<std::uint16_t>(area.width);
    const auto height = static_cast<std::uint16_t>(area.height);
    xcb_randr_mode_info_t mode{};
    mode.width = width;
    mode.height = height;
    mode.hsync_start = static_cast<std::uint16_t>(width + 48);
    mode.hsync_end = static_cast<std::uint16_t>(width + 80);
    mode.htotal = static_cast<std::uint16_t>(width + 160);
    mode.vsync_start = static_cast<std::uint16_t>(height + 3);
    mode.vsync_end = static_cast<std::uint16_t>(height + 8);
    mode.vtotal = static_cast<std::uint16_t>(height + 31);
    mode.dot_clock = std::uint32_t{60} * mode.htotal * mode.vtotal;
    mode.name_len = static_cast<std::uint16_t>(nameLength);
    return mode;
}

// libxcb 1.15 counts one part too many in its own xcb_randr_set_monitor and loses the connection.
void sendSetMonitor(const XConnection& x, std::vector<std::uint32_t>& described) {
    xcb_randr_set_monitor_request_t header{};
    header.window = x.root();
    // libxcb writes into the two places before the first part.
    std::array<iovec, 4> parts{};
    parts[2] = {&header, sizeof header};
    parts[3] = {described.data(), described.size() * sizeof(std::uint32_t)};
    const xcb_protocol_request_t request{2, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
    xcb_send_request(x.get(), 0, &parts[2], &request);
}

class ServerGrab {
  public:
    explicit ServerGrab(const XConnection& connection) : x(connection) { xcb_grab_server(x.get()); }
    ~ServerGrab() {
        xcb_ungrab_server(x.get());
        xcb_flush(x.get());
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

  private:
    const XConnection& x;
};

} // namespace

Monitors::Monitors(const XConnection& connection, Way how) : x(connection), way(how) {
    const auto version = own(
        xcb_randr_query_version_reply(x.get(), xcb_randr_query_version(x.get(), 1, 5), nullptr));
    check(version && version->major_version == 1 && version->minor_version >= 5, "RandR 1.5");
}

void Monitors::apply(const Layout& layout) {
    {
        const ServerGrab grab(x);
        if (way == Way::outputs)
            light(layout);
        else
            divide(layout);
    }
    if (way == Way::outputs) probe();
    x.sync();
    current = layout;
}

// Only when somebody asks in earnest does the dummy driver notice that an output which shows
// something is connected, and window managers and toolkits leave out one that is not.
void Monitors::probe() const {
    const auto probed = own(xcb_randr_get_screen_resources_reply(
        x.get(), xcb_randr_get_screen_resources(x.get(), x.root()), nullptr));
    check(probed != nullptr, "a probe of its outputs");
}

Monitors::Resources Monitors::resources() const {
    Resources known;
    known.reply = own(xcb_randr_get_screen_resources_current_reply(
        x.get(), xcb_randr_get_screen_resources_current(x.get(), x.root()), nullptr));
    check(known.reply != nullptr, "its screen resources");

    const auto* names = reinterpret_cast<const char*>(
        xcb_randr_get_screen_resources_current_names(known.reply.get()));
    for (auto mode = xcb_randr_get_screen_resources_current_modes_iterator(known.reply.get());
         mode.rem > 0; xcb_randr_mode_info_next(&mode)) {
        known.modes[std::string(names, mode.data->name_len)] = mode.data->id;
        names += mode.data->name_len;
    }
    const auto* ids = xcb_randr_get_screen_resources_current_outputs(known.reply.get());
    for (int index = 0; index < known.reply->num_outputs; ++index) {
        const auto info = own(xcb_randr_get_output_info_reply(
            x.get(), xcb_randr_get_output_info(x.get(), ids[index], XCB_CURRENT_TIME), nullptr));
        if (!info) continue;
        const auto* name =
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        const auto* crtcs = xcb_randr_get_output_info_crtcs(info.get());
        known.outputs[std::string(name, info->name_len)] = {ids[index],
                                                            {crtcs, crtcs + info->num_crtcs}};
    }
    return known;
}

xcb_randr_mode_t Monitors::modeFor(const Resources& known, const Area& area,
                                   xcb_randr_output_t output) {
    const std::string name = modeName(area);
    xcb_randr_mode_t mode = 0;
    if (const auto found = known.modes.find(name); found != known.modes.end()) {
        mode = found->second;
    } else {
        const auto made = own(xcb_randr_create_mode_reply(
            x.get(),
            xcb_randr_create_mode(x.get(), x.root(), timings(area, name.size()),
                                  static_cast<std::uint32_t>(name.size()), name.data()),
            nullptr));
        check(made != nullptr, "the mode " + name);
        mode = made->mode;
    }
    xcb_randr_add_output_mode(x.get(), output, mode);
    return mode;
}

void Monitors::setScreenSize(const Area& bounds) {
    xcb_randr_set_screen_size(x.get(), x.root(), static_cast<std::uint16_t>(bounds.width),
                              static_cast<std::uint16_t>(bounds.height), millimetres(bounds.width),
                              millimetres(bounds.height));
}

// As xrandr does it: what changes goes dark, the screen takes its new size, then it is lit again.
void Monitors::light(const Layout& lit) {
    Resources known = resources();
    const auto* crtcs = xcb_randr_get_screen_resources_current_crtcs(known.reply.get());
    std::set<xcb_randr_crtc_t> unused(crtcs, crtcs + known.reply->num_crtcs);

    struct Step {
        xcb_randr_crtc_t crtc;
        xcb_randr_output_t output;
        xcb_randr_mode_t mode;
        Area area;
    };
    std::vector<Step> steps;
    for (const Monitor& monitor : lit) {
        const auto found = known.outputs.find(monitor.output);
        check(found != known.outputs.end(), "the output " + monitor.output);
        const Output& output = found->second;
        const auto crtc = std::find_if(output.crtcs.begin(), output.crtcs.end(),
                                       [&](auto candidate) { return unused.contains(candidate); });
        check(crtc != output.crtcs.end(), "a CRTC for " + monitor.output);
        unused.erase(*crtc);
        const xcb_randr_mode_t mode = modeFor(known, monitor.area, output.id);
        known.modes[modeName(monitor.area)] = mode;
        steps.push_back({*crtc, output.id, mode, monitor.area});
    }

    const auto configure = [&](xcb_randr_crtc_t crtc, const Step* step) {
        const auto done = own(xcb_randr_set_crtc_config_reply(
            x.get(),
            xcb_randr_set_crtc_config(x.get(), crtc, XCB_CURRENT_TIME, XCB_CURRENT_TIME,
                                      static_cast<std::int16_t>(step ? step->area.x : 0),
                                      static_cast<std::int16_t>(step ? step->area.y : 0),
                                      step ? step->mode : 0, XCB_RANDR_ROTATION_ROTATE_0,
                                      step ? 1 : 0, step ? &step->output : nullptr),
            nullptr));
        check(done && done->status == XCB_RANDR_SET_CONFIG_SUCCESS, "a CRTC's configuration");
    };
    const auto showsAlready = [&](const Step& step) {
        const auto info = own(xcb_randr_get_crtc_info_reply(
            x.get(), xcb_randr_get_crtc_info(x.get(), step.crtc, XCB_CURRENT_TIME), nullptr));
        return info && info->mode == step.mode && info->x == step.area.x &&
               info->y == step.area.y && info->num_outputs == 1 &&
               *xcb_randr_get_crtc_info_outputs(info.get()) == step.output;
    };
    for (const xcb_randr_crtc_t crtc : unused)
        configure(crtc, nullptr);
    std::erase_if(steps, showsAlready);
    for (const Step& step : steps)
        configure(step.crtc, nullptr);
    setScreenSize(boundsOf(lit));
    for (const Step& step : steps)
        configure(step.crtc, &step);
    for (const Monitor& monitor : lit)
        if (monitor.primary)
            xcb_randr_set_output_primary(x.get(), x.root(), known.outputs[monitor.output].id);
}

void Monitors::divide(const Layout& wanted) {
    for (const std::string& name : regionNames)
        xcb_randr_delete_monitor(x.get(), x.root(), x.atom(name));
    regionNames.clear();

    probe(); // Xephyr has no output before
    const Resources known = resources();
    check(!known.outputs.empty(), "an output");
    const auto& [outputName, output] = *known.outputs.begin();
    const Area bounds = boundsOf(wanted);
    const auto geometry =
        own(xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), x.root()), nullptr));
    if (geometry && (geometry->width != bounds.width || geometry->height != bounds.height))
        light({{outputName, bounds, true}});

    bool first = true;
    for (const Monitor& monitor : wanted) {
        xcb_randr_monitor_info_t info{};
        info.name = x.atom(monitor.output);
        info.primary = monitor.primary;
        info.nOutput = first ? 1 : 0;
        info.x = static_cast<std::int16_t>(monitor.area.x);
        info.y = static_cast<std::int16_t>(monitor.area.y);
        info.width = static_cast<std::uint16_t>(monitor.area.width);
        info.height = static_cast<std::uint16_t>(monitor.area.height);
        info.width_in_millimeters = millimetres(monitor.area.width);
        info.height_in_millimeters = millimetres(monitor.area.height);
        std::vector<std::uint32_t> described(sizeof info / sizeof(std::uint32_t));
        std::memcpy(described.data(), &info, sizeof info);
        if (first) described.push_back(output.id);
        sendSetMonitor(x, described);
        regionNames.push_back(monitor.output);
        first = false;
    }
}

Layout Monitors::seen() const {
    const auto reply = own(xcb_randr_get_monitors_reply(
        x.get(), xcb_randr_get_monitors(x.get(), x.root(), 1), nullptr));
    check(reply != nullptr, "its monitors");
    Layout result;
    for (auto entry = xcb_randr_get_monitors_monitors_iterator(reply.get()); entry.rem > 0;
         xcb_randr_monitor_info_next(&entry)) {
        const auto name = own(xcb_get_atom_name_reply(
            x.get(), xcb_get_atom_name(x.get(), entry.data->name), nullptr));
        result.push_back(
            {name ? std::string(xcb_get_atom_name_name(name.get()),
                                static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())))
                  : std::string(),
             {entry.data->x, entry.data->y, entry.data->width, entry.data->height},
             entry.data->primary != 0});
    }
    std::stable_partition(result.begin(), result.end(),
                          [](const Monitor& monitor) { return monitor.primary; });
    return result;
}

} // namespace support
