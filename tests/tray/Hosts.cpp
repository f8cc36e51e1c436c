#include "Hosts.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace traytests {

namespace {

constexpr const char* xfcePanel = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="DARK"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="POSITION"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="mode" type="uint" value="MODE"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

// Only the status notifier plugin: no XEMBED tray.
constexpr const char* lxqtPanel = R"([General]
panels=panel1

[panel1]
plugins=statusnotifier
position=POSITION
panelSize=32
iconSize=22
background-color="#d0d0d0"

[statusnotifier]
type=statusnotifier
)";

constexpr const char* edgeNames[] = {"top", "bottom", "left", "right"};

bool isInstalled(const std::string& program) {
    std::istringstream folders(std::getenv("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');)
        if (std::filesystem::exists(std::filesystem::path(folder) / program)) return true;
    return false;
}

std::string replaced(std::string text, const std::string& word, const std::string& by) {
    return text.replace(text.find(word), word.size(), by);
}

std::unique_ptr<support::ChildProcess> startPlainTray(const support::PrivateDesktop& desktop,
                                                      const Look& look) {
    const std::string height = std::to_string(look.height);
    if (!isInstalled("trayer"))
        return desktop.spawn("stalonetray", {"--config", "/dev/null", "--geometry", "1x1+0+0",
                                             "--slot-size", height, "--icon-size", height,
                                             "--background", look.black ? "#000000" : "#d0d0d0"});
    std::vector<std::string> arguments{"--edge",      edgeNames[static_cast<int>(look.edge)],
                                       "--align",     look.centred ? "center" : "left",
                                       "--widthtype", "request",
                                       "--height",    height};
    if (look.black)
        arguments.insert(arguments.end(),
                         {"--transparent", "true", "--alpha", "0", "--tint", "0x000000"});
    return desktop.spawn("trayer", arguments);
}

std::unique_ptr<support::ChildProcess> startXfcePanel(const support::PrivateDesktop& desktop,
                                                      Edge edge, bool dark) {
    // In the order of Edge, the first number being the panel's own for an edge or a corner.
    constexpr const char* places[] = {"p=6;x=0;y=0", "p=8;x=0;y=0", "p=5;x=0;y=0", "p=1;x=0;y=0"};
    std::string text = replaced(xfcePanel, "DARK", dark ? "true" : "false");
    text = replaced(text, "POSITION", places[static_cast<int>(edge)]);
    text = replaced(text, "MODE", edge == Edge::left || edge == Edge::right ? "1" : "0");
    write(desktop.configFolder() / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", text);
    return desktop.spawn("xfce4-panel", {"--disable-wm-check"});
}

std::unique_ptr<support::ChildProcess> startLxqtPanel(const support::PrivateDesktop& desktop,
                                                      Edge edge) {
    constexpr const char* places[] = {"Top", "Bottom", "Left", "Right"};
    write(desktop.configFolder() / "lxqt/panel.conf",
          replaced(lxqtPanel, "POSITION", places[static_cast<int>(edge)]));
    return desktop.spawn("lxqt-panel");
}

} // namespace

void write(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

bool plainTrayCanBeAt(Edge edge) {
    return edge == Edge::top || isInstalled("trayer");
}

std::unique_ptr<support::ChildProcess> startHost(const support::PrivateDesktop& desktop, Host host,
                                                 const Look& look) {
    switch (host) {
    case Host::plainTray:
        return startPlainTray(desktop, look);
    case Host::xfcePanel:
    case Host::darkXfcePanel:
        return startXfcePanel(desktop, look.edge, host == Host::darkXfcePanel);
    case Host::lxqtPanel:
        return startLxqtPanel(desktop, look.edge);
    }
    return nullptr;
}

} // namespace traytests
