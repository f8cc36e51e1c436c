#pragma once

#include "app/AppDelegate.h"
#include "platform/linux/CanberraSounds.h"
#include "platform/linux/FileWatch.h"
#include "platform/linux/LinuxSystemInfo.h"
#include "platform/linux/ProductBundle.h"
#include "platform/linux/QuitSignals.h"
#include "platform/linux/SettingsFile.h"
#include "platform/linux/XdgFiles.h"
#include "platform/qt/ColourScheme.h"
#include "platform/qt/DesktopNotifications.h"
#include "platform/qt/MenuIcons.h"
#include "platform/qt/Pictures.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/QtStatusItem.h"
#include "platform/qt/TrayIcon.h"
#include "platform/x11/Cursor.h"
#include "platform/x11/Displays.h"
#include "platform/x11/InputEvents.h"
#include "platform/x11/Keyboard.h"
#include "platform/x11/Pointer.h"
#include "platform/x11/Windows.h"
#include "platform/x11/Workspace.h"

#include <optional>

/// Every service of an X11 session, and the application object that lives on them. Needs a
/// QApplication. Whoever ends the process through `application` has everything undone: the
/// settings are saved, the windows and then the X11 services destroyed.
class Desktop {
  public:
    /// What is lent must outlive the object.
    Desktop(platform::Log& log, platform::linux::ProductBundle& bundle,
            platform::Descriptors& descriptors, platform::x11::Connection& connection);

    void launch();

    /// The program was started again: its menu comes up.
    void activate();

    platform::qt::QtApplication application;

  private:
    struct X11Services {
        X11Services(platform::x11::Connection& connection, platform::RunLoop& runLoop,
                    platform::Log& log, const std::string& name, platform::PictureSource pictures);

        platform::x11::Displays displays;
        platform::x11::Pointer pointer;
        platform::x11::Cursor cursor;
        platform::x11::InputEvents input;
        platform::x11::Keyboard keyboard;
        platform::x11::Windows windows;
        platform::x11::Workspace workspace;
    };

    platform::qt::QtStatusItem::Tray trayOn(platform::Log& log,
                                            const platform::linux::ProductBundle& bundle,
                                            platform::x11::Connection& connection);
    void quit();

    platform::qt::QtRunLoop runLoop;
    platform::linux::SettingsFile settings;
    platform::linux::FileWatch settingsWatch;
    platform::linux::XdgFiles files;
    platform::linux::LinuxSystemInfo system;
    platform::linux::CanberraSounds sounds;
    platform::qt::QtAlerts alerts;
    platform::qt::ColourScheme colourScheme;
    platform::qt::TemplateImages images;
    platform::qt::MenuIcons menuIcons;
    platform::qt::QtStatusItem statusItem;
    platform::qt::DesktopNotifications notifications;
    platform::qt::Pictures pictures;
    std::optional<X11Services> x11;
    std::optional<platform::qt::TrayIcon> tray;
    std::optional<palisor::AppDelegate> delegate;
    platform::linux::QuitSignals quitSignals;
};
