#include "testing/desktop/XServer.h"

#include "testing/devices/Device.h"

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
    SubSection "Display"
        Modes "1024x768"
    EndSubSection
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
)";

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string size(const Area& area) {
    return std::to_string(area.width) + "x" + std::to_string(area.height);
}

void writeConfiguration(const std::filesystem::path& path, const ServerStart& start) {
    std::ofstream file(path);
    file << xorgConfiguration;
    for (std::size_t i = 0; i < start.devices.size(); ++i)
        file << "    InputDevice \"" << Device::nameOf(i) << "\"\n";
    file << "EndSection\n";
    for (std::size_t i = 0; i < start.devices.size(); ++i)
        file << "Section \"InputDevice\"\n"
             << "    Identifier \"" << Device::nameOf(i) << "\"\n"
             << "    Driver \"inputtest\"\n"
             << "    Option \"DeviceType\" \"" << start.devices[i] << "\"\n"
             << "    Option \"SocketPath\" \"" << deviceSocket(start.folder, i).string() << "\"\n"
             << "    Option \"PointerButtonCount\" \"12\"\n"
             << "    Option \"AccelerationScheme\" \"none\"\n"
             << "EndSection\n";
}

std::vector<std::string> commandFor(const ServerStart& start) {
    switch (start.kind) {
    case ServerKind::xorg: {
        const auto configuration = start.folder / "xorg.conf";
        writeConfiguration(configuration, start);
        return {"Xorg",
                "-config",
                configuration,
                "-logfile",
                start.folder / "xorg.log",
                "-noreset",
                "-nolisten",
                "tcp",
                "-displayfd",
                "3",
                "-depth",
                std::to_string(start.depth)};
    }
    case ServerKind::xvfb:
        // Room for monitors that are plugged in later; the screen itself is made to fit.
        return {"Xvfb", "-screen", "0", "8192x4320x24", "-noreset", "-nolisten",
                "tcp",  "-s",      "0", "-displayfd",   "3"};
    case ServerKind::xephyr:
        return {"Xephyr",
                "-screen",
                size(boundsOf(start.layout)),
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

std::filesystem::path deviceSocket(const std::filesystem::path& folder, std::size_t index) {
    return folder / ("device-" + std::to_string(index));
}

XServer startXServer(const ServerStart& start, const Environment& environment) {
    Environment surroundings = environment;
    if (start.kind == ServerKind::xephyr) surroundings["DISPLAY"] = start.hostDisplay;
    auto command = commandFor(start);
    command.insert(command.end(), start.arguments.begin(), start.arguments.end());
    try {
        auto [process, number] = startServer(command, surroundings);
        return {start.kind, ":" + number, std::move(process)};
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(error.what() + contentOf(start.folder / "xorg.log"));
    }
}

} // namespace support
