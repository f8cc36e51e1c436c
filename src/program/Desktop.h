#pragma once

#include "app/AppDelegate.h"
#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/http/CurlHttp.h"
#include "platform/linux/http/JsonParser.h"
#include "platform/linux/login/AutostartItems.h"
#include "platform/linux/settings/FileWatch.h"
#include "platform/linux/settings/SettingsFile.h"
#include "platform/linux/system/CanberraSounds.h"
#include "platform/linux/system/DisplayPower.h"
#include "platform/linux/system/LinuxSystemInfo.h"
#include "platform/linux/system/ModuleCalendar.h"
#include "platform/linux/system/QuitSignals.h"
#include "platform/linux/system/TextCodec.h"
#include "platform/qt/alerts/QtAlerts.h"
#include "platform/qt/alerts/ShortcutRecorder.h"
#include "platform/qt/info/QtInfoWindows.h"
#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/pictures/ColourScheme.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/qt/pictures/QtImages.h"
#include "platform/qt/session/DesktopNotifications.h"
#include "platform/qt/session/DistributedNotifications.h"
#include "platform/qt/session/SessionApplications.h"
#include "platform/qt/session/SessionInhibitor.h"
#include "platform/qt/session/UrlOpener.h"
#include "platform/qt/tray/QtStatusItem.h"
#include "platform/qt/tray/TrayIcon.h"
#include "platform/qt/web/WebModule.h"
#include "platform/x11/input/InputEvents.h"
#include "platform/x11/keys/HotKeys.h"
#include "platform/x11/keys/Keyboard.h"
#include "platform/x11/overlay/Windows.h"
#include "platform/x11/pointer/Cursor.h"
#include "platform/x11/pointer/Pointer.h"
#include "platform/x11/session/Displays.h"
#include "platform/x11/session/ScreenSaver.h"
#include "platform/x11/session/Workspace.h"
#include "program/Options.h"
#include "scenario/record/Recorded.h"

#include <optional>

/// Two, since the one that the devices' events come through is read at a pace of its own, and
/// nothing else may have to wait for that.
struct Connections {
    platform::x11::Connection& general;
    platform::x11::Connection& input;
};

/// Every service of an X11 session, and the application object that lives on them. Needs a
/// QApplication. Whoever ends the process through `application` has everything undone: the
/// settings are saved, the windows and then the X11 services destroyed.
class Desktop {
  public:
    /// What is lent must outlive the object.
    Desktop(platform::Log& log, platform::linux::ProductBundle& bundle,
            platform::Descriptors& descriptors, const Connections& connections,
            const Options& options);

    void launch();

    /// The program was started again: its menu comes up.
    void activate();

    platform::qt::QtApplication application;

  private:
    struct X11Services {
        X11Services(const Connections& connections, platform::Descriptors& descriptors,
                    platform::RunLoop& runLoop, platform::Settings& settings, platform::Log& log,
                    const std::string& name, platform::PictureSource pictures,
                    platform::x11::HotKeys::Later later, platform::x11::Workspace::Session session,
                    bool serverHolds);

        platform::x11::Displays displays;
        platform::x11::Pointer pointer;
        platform::x11::Cursor cursor;
        platform::x11::InputEvents input;
        platform::x11::Keyboard keyboard;
        platform::x11::HotKeys hotKeys;
        platform::x11::Windows windows;
        platform::x11::Workspace workspace;
        platform::x11::ScreenSaver screenSaver;
    };

    /// The services that tell what the user does, with a scenario written on the way.
    struct Recording {
        Recording(const std::string& path, Desktop& desktop);

        record::ScenarioWriter writer;
        record::RecordedInput input;
        record::RecordedDisplays displays;
        record::RecordedStatusItem statusItem;
    };

    void startRecording(const std::string& path);
    platform::Platform services();
    platform::qt::QtStatusItem::Tray trayOn(platform::x11::Connection& connection);
    std::vector<platform::linux::DisplayPower::Way> waysToStayAwake();
    void tellWhyNoCalendar(platform::calendar::Refusal why);
    void quit();

    platform::Log& log;
    platform::linux::ProductBundle& bundle;
    platform::qt::QtRunLoop runLoop;
    platform::linux::SettingsFile settings;
    platform::linux::FileWatch settingsWatch;
    platform::linux::XdgFiles files;
    platform::linux::LinuxSystemInfo system;
    platform::linux::CanberraSounds sounds;
    platform::linux::AutostartItems loginItems;
    platform::qt::SessionApplications applications;
    platform::qt::Pictures pictures;
    platform::qt::QtAlerts alerts;
    platform::qt::ColourScheme colourScheme;
    platform::qt::QtStatusItem statusItem;
    platform::qt::DesktopNotifications notifications;
    platform::qt::UrlOpener urlOpener;
    platform::qt::SessionInhibitor sessionInhibitor;
    platform::linux::DisplayPower power;
    platform::linux::TextCodec textCodec;
    platform::qt::QtInfoWindows infoWindows;
    platform::linux::CurlHttp http;
    platform::linux::JsonParser json;
    platform::qt::QtImages imageOperations;
    platform::qt::WebModule web;
    platform::linux::ModuleCalendar calendar;
    std::optional<X11Services> x11;
    std::optional<platform::qt::TrayIcon> tray;
    std::optional<Recording> recording;
    std::optional<palisor::AppDelegate> delegate;
    platform::linux::QuitSignals quitSignals;
};
