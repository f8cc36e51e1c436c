#pragma once

#include "platform/Alerts.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/Calendar.h"
#include "platform/Cursor.h"
#include "platform/Displays.h"
#include "platform/Files.h"
#include "platform/Focus.h"
#include "platform/HotKeys.h"
#include "platform/Http.h"
#include "platform/Images.h"
#include "platform/InfoWindow.h"
#include "platform/InputEvents.h"
#include "platform/Json.h"
#include "platform/Keyboard.h"
#include "platform/Log.h"
#include "platform/LoginItems.h"
#include "platform/Notifications.h"
#include "platform/Pointer.h"
#include "platform/Power.h"
#include "platform/RunLoop.h"
#include "platform/Settings.h"
#include "platform/Sounds.h"
#include "platform/StatusItem.h"
#include "platform/SystemInfo.h"
#include "platform/TextCodec.h"
#include "platform/Web.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"

namespace platform {

/// One service of each kind, lent to the core by whoever owns them. All must outlive the core.
struct Platform {
    Log& log;
    RunLoop& runLoop;
    Application& application;
    Bundle& bundle;
    Settings& settings;
    Files& files;
    SystemInfo& system;
    Displays& displays;
    Pointer& pointer;
    Cursor& cursor;
    InputEvents& input;
    Keyboard& keyboard;
    HotKeys& hotKeys;
    Windows& windows;
    Focus& focus;
    Workspace& workspace;
    StatusItem& statusItem;
    Alerts& alerts;
    Notifications& notifications;
    Sounds& sounds;
    LoginItems& loginItems;
    Power& power;
    TextCodec& textCodec;
    InfoWindows& infoWindows;
    Http& http;
    Json& json;
    Images& images;
    Web& web;
    Calendar& calendar;
};

} // namespace platform
