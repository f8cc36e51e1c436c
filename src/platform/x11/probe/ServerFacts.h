#pragma once

#include "platform/Geometry.h"
#include "platform/HotKeys.h"
#include "platform/Log.h"
#include "platform/Settings.h"

#include <optional>
#include <string>
#include <vector>

// What a display is like for the program, whether or not it could work there. Nothing is changed.

namespace platform::x11 {

struct ExtensionFacts {
    std::string name;    ///< as the server calls it
    std::string version; ///< "2.4"; empty where the server lacks it
    std::string needed;  ///< the lowest that does; empty where the program works without it
    bool suffices = false;
};

struct MonitorFacts {
    std::string name;
    Rect area; ///< X root coordinates, y downwards
    bool primary = false;
};

/// The colours of an output that shows something.
struct RampFacts {
    std::string output;
    bool canBeSet = false;
    bool isPlain = false; ///< what the user has there, whether or not it is darkened now, is linear
};

struct ServerFacts {
    bool isReached = false; ///< somebody answered at the display; nothing else is there otherwise
    std::string refusal;    ///< why the program does not work there, in one line; empty if it does
    std::string vendor;
    std::string release;
    std::vector<ExtensionFacts> extensions;
    std::vector<MonitorFacts> monitors; ///< as the server lists them
    std::string windowManager;          ///< its name, "?" for one that has none; empty for none
    bool hasCompositor = false;
    bool hasTray = false; ///< somebody takes icons in by the XEMBED protocol
    std::string tray;     ///< the name of that one, where it tells it
    std::vector<RampFacts> ramps;
    bool leftDark = false; ///< by a program that has gone

    // Of a server where the program works.
    bool holdsCursor = false;     ///< it tells what is pushed against barriers
    std::vector<Rect> screens;    ///< as the program counts them; X root coordinates
    std::string shortcut;         ///< the one asked for, as the keyboard labels it
    bool isShortcutTaken = false; ///< by another program; false where it was not tried
};

struct ServerQuestion {
    std::optional<Shortcut> shortcut{}; ///< to be named
    bool triesShortcut = false;         ///< and to be claimed and given back at once
    std::string rampFolder{};           ///< of what is kept of darkened ramps; empty for none
};

/// Asks the server of $DISPLAY, and waits for it without an end. `settings` may be any, and are
/// neither read nor written.
ServerFacts askServer(const ServerQuestion& question, Settings& settings, Log& log);

/// Puts back the colours that a program which has gone left dark at $DISPLAY; false where there is
/// nothing of the kind. Waits for the server without an end.
bool brighten(const std::string& rampFolder);

} // namespace platform::x11
