#include "testing/desktop/XServer.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace support {

namespace {

// Without devices of the machine, so that nothing but the tests moves the cursor; without a
// screen saver, which would blank long benchmarks.
constexpr const char* xorgConfiguration = R"(Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoEnableDevices" "false"
    Option "DontVTSwitch" "true"
    Option "BlankTime" "0"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "1024x768"
    EndSubSection
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
EndSection
)";

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string size(const Area& area) {
    return std::to_string(area.width) + "x" + std::to_string(area.height);
}

std::vector<std::string> commandFor(ServerKind kind, const std::filesystem::path& folder,
                                    const Layout& layout) {
    switch (kind) {
    case ServerKind::xorg: {
        const auto configuration = folder / "xorg.conf";
        std::ofstream(configuration) << xorgConfiguration;
        return {"Xorg",     "-config",   configuration, "-logfile",   folder / "xorg.log",
                "-noreset", "-nolisten", "tcp",         "-displayfd", "3"};
    }
    case ServerKind::xvfb:
        // Room for monitors that are plugged in later; the screen itself is made to fit.
        return {"Xvfb", "-screen", "0", "8192x4320x24", "-noreset", "-nolisten",
                "tcp",  "-s",      "0", "-displayfd",   "3"};
    case ServerKind::xephyr:
        return {"Xephyr",
                "-screen",
                size(boundsOf(layout)),
                "-title",
                "Palisor demonstration",
                "-no-host-grab",
                "-noreset",
                "-nolisten",
                "tcp",
                "-s",
                "0",
                "-displayfd",
                "3"};
    }
    throw std::invalid_argument("no such server");
}

} // namespace

XServer startXServer(ServerKind kind, const std::filesystem::path& folder,
                     const Environment& environment, const Layout& layout,
                     const std::string& hostDisplay, const std::vector<std::string>& arguments) {
    Environment surroundings = environment;
    if (kind == ServerKind::xephyr) surroundings["DISPLAY"] = hostDisplay;
    auto command = commandFor(kind, folder, layout);
    command.insert(command.end(), arguments.begin(), arguments.end());
    try {
        auto [process, number] = startServer(command, surroundings);
        return {kind, ":" + number, std::move(process)};
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(error.what() + contentOf(folder / "xorg.log"));
    }
}

} // namespace support
