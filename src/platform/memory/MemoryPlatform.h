#pragma once

#include "platform/Platform.h"
#include "platform/memory/Alerts.h"
#include "platform/memory/Application.h"
#include "platform/memory/Bundle.h"
#include "platform/memory/Calendar.h"
#include "platform/memory/Cursor.h"
#include "platform/memory/Displays.h"
#include "platform/memory/Effects.h"
#include "platform/memory/Files.h"
#include "platform/memory/Focus.h"
#include "platform/memory/HotKeys.h"
#include "platform/memory/Http.h"
#include "platform/memory/Images.h"
#include "platform/memory/InfoWindows.h"
#include "platform/memory/InputEvents.h"
#include "platform/memory/JsonParser.h"
#include "platform/memory/Keyboard.h"
#include "platform/memory/Log.h"
#include "platform/memory/LoginItems.h"
#include "platform/memory/Notifications.h"
#include "platform/memory/Pointer.h"
#include "platform/memory/Power.h"
#include "platform/memory/RunLoop.h"
#include "platform/memory/Settings.h"
#include "platform/memory/Sounds.h"
#include "platform/memory/StatusItem.h"
#include "platform/memory/SystemInfo.h"
#include "platform/memory/TextCodec.h"
#include "platform/memory/Web.h"
#include "platform/memory/Windows.h"
#include "platform/memory/Workspace.h"

namespace platform::memory {

/// The complete platform in memory: no display, no disk, no real clock. At first there is no
/// screen, the information dictionary and the settings are empty, and the cursor is at (0, 0).
class MemoryPlatform {
  public:
    Clock clock;
    Effects effects{clock};
    Log log{effects};
    RunLoop runLoop{effects, clock};
    Application application{effects};
    Bundle bundle;
    Settings settings{effects};
    Files files{bundle, settings};
    SystemInfo system{clock};
    Displays displays;
    Pointer pointer{effects};
    Cursor cursor{effects};
    InputEvents input{effects, clock};
    Keyboard keyboard{effects};
    HotKeys hotKeys{effects, settings};
    Windows windows{effects};
    Focus focus{effects};
    Workspace workspace{effects};
    StatusItem statusItem{effects};
    Alerts alerts{effects, runLoop};
    Notifications notifications{effects};
    Sounds sounds{effects};
    LoginItems loginItems{effects};
    Power power{effects};
    TextCodec textCodec;
    InfoWindows infoWindows{windows, workspace};
    Http http{effects};
    JsonParser json;
    Images images{[this](const std::string& path) { return files.contents(path); }};
    Web web{runLoop, displays};
    Calendar calendar{effects, clock};

    MemoryPlatform() = default;
    MemoryPlatform(const MemoryPlatform&) = delete;
    MemoryPlatform& operator=(const MemoryPlatform&) = delete;

    /// The services as the core takes them; the platform must outlive the core.
    Platform services() { return servicesWith(web); }
    /// The same with a web engine from elsewhere.
    Platform servicesWith(platform::Web& engine);

    /// The user's languages, preferred first: the texts are in the first one.
    void setLanguages(const std::vector<std::string>& languages) {
        bundle.setLanguages(languages);
        system.setLanguages(languages);
    }

    /// Lets virtual time pass.
    void advance(double seconds) { runLoop.advance(seconds); }

    /// Moves the cursor there and delivers an event of that type. Top-left coordinates.
    void move(Point to, EventType type = EventType::mouseMoved);

    /// Presses or releases a modifier.
    void changeModifier(std::uint16_t keyCode);
};

} // namespace platform::memory
