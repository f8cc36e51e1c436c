#pragma once

#include "testing/desktop/PrivateDesktop.h"

#include <filesystem>
#include <memory>
#include <string>

namespace traytests {

/// A tray host of the desktops of this kind; the settings are written before it starts.
/// `plainTray` is a tray and nothing else: trayer, or stalonetray where a release has no trayer.
enum class Host { plainTray, xfcePanel, darkXfcePanel, lxqtPanel };

/// Of the screen.
enum class Edge { top, bottom, left, right };

struct Look {
    Edge edge = Edge::top; ///< a stalonetray is always at the top
    bool centred = false;  ///< the plain tray, else it is at the beginning of its edge
    int height = 24;       ///< of the plain tray, pixels
    bool black = false;    ///< the plain tray
};

/// Whether the plain tray of this system can be there.
bool plainTrayCanBeAt(Edge edge);

/// The panels are as long as their edge, and have the icon at its beginning.
std::unique_ptr<support::ChildProcess> startHost(const support::PrivateDesktop& desktop, Host host,
                                                 const Look& look = {});

/// The file with that text, in folders that are made.
void write(const std::filesystem::path& path, const std::string& text);

} // namespace traytests
