#pragma once

#include "app/AppDelegate.h"
#include "bus/ProductObject.h"
#include "engine/Decisions.h"
#include "platform/json/Parser.h"
#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/http/CurlHttp.h"
#include "platform/linux/login/AutostartItems.h"
#include "platform/linux/settings/FileWatch.h"
#include "platform/linux/settings/SettingsFile.h"
#include "platform/linux/system/CanberraSounds.h"
#include "platform/linux/system/DisplayPower.h"
#include "platform/linux/system/LinuxSystemInfo.h"
#include "platform/linux/system/ModuleCalendar.h"
#include "platform/linux/system/QuitSignals.h"
#include "platform/linux/system/SystemLog.h"
#include "platform/linux/system/TextCodec.h"
#include "platform/qt/alerts/QtAlerts.h"
#include "platform/qt/info/QtInfoWindows.h"
#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/pictures/ColourScheme.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/qt/pictures/QtImages.h"
#include "platform/qt/session/DesktopNotifications.h"
#include "platform/qt/session/QtWorkspace.h"
#include "platform/qt/session/SessionInhibitor.h"
#include "platform/qt/tray/QtStatusItem.h"
#include "platform/qt/tray/TrayIcon.h"
#include "platform/qt/web/WebModule.h"
#include "program/FirstMenu.h"
#include "program/LoginWait.h"
#include "program/Notices.h"
#include "program/bus/DoctorReport.h"
#include "program/session/Session.h"
#include "scenario/record/Recorded.h"

#include <optional>

/// The services that every kind of session shares, those of the session, and the application object
/// that lives on them. Needs a QApplication.
class Program {
  public:
    /// What is lent must outlive the object.
    Program(const Product& product, platform::linux::ProductBundle& bundle, Session& session,
            bus::Link& link, platform::Descriptors& descriptors, platform::Log& log,
            const Options& options);

    /// The application object starts, from inside the run loop, which an alert or a request to quit
    /// at the start relies on. At login the monitors are waited for first.
    void launch();

    /// The program was started again: its menu comes up.
    void activate();

    /// Ends the process and has everything undone: the settings are saved, the windows and then the
    /// session's services destroyed.
    [[noreturn]] void exit(int status) { application.exit(status); }

  private:
    /// The services that tell what the user does, with a scenario written on the way.
    struct Recording {
        Recording(const std::string& path, Program& program);

        record::ScenarioWriter writer;
        record::RecordedInput input;
        record::RecordedDisplays displays;
        record::RecordedStatusItem statusItem;
    };

    void startRecording(const std::string& path);
    platform::Platform services(platform::Displays& displays, platform::InputEvents& input,
                                platform::StatusItem& statusItem);
    /// The control that an alert names; null for an unknown one.
    platform::qt::Accessory* accessory(const std::string& name, QWidget* parent);
    bus::ProductObject::Program onBus(const Product& product);
    platform::Capabilities capabilities() const;
    std::optional<platform::Shortcut> chosenShortcut() const;
    void undoAtExit();
    void begin();
    void tellFailures();
    /// What the desktop does not allow of what the product is for.
    void tellLimits();
    void tellWhyNoCalendar(platform::calendar::Refusal why);
    void startAgain();
    void quit();

    platform::Log& log;
    platform::linux::DebugLog coreLog;
    platform::linux::ProductBundle& bundle;
    Session& session;
    platform::qt::QtApplication application;
    platform::qt::QtRunLoop runLoop;
    platform::linux::SettingsFile settings;
    platform::linux::FileWatch settingsWatch;
    platform::linux::XdgFiles files;
    platform::linux::LinuxSystemInfo system;
    platform::linux::CanberraSounds sounds;
    platform::linux::AutostartItems loginItems;
    platform::qt::QtWorkspace workspace;
    platform::qt::ColourScheme colourScheme;
    platform::qt::Pictures pictures;
    Session::Services desk; ///< what the session brings
    std::optional<platform::qt::TrayIcon> tray;
    platform::qt::QtStatusItem statusItem;
    platform::qt::QtAlerts alerts;
    platform::qt::DesktopNotifications notifications;
    Notices notices;
    platform::qt::SessionInhibitor sessionInhibitor;
    platform::linux::DisplayPower power;
    platform::linux::TextCodec textCodec;
    platform::qt::QtInfoWindows infoWindows;
    FirstMenu firstMenu;
    platform::linux::CurlHttp http;
    platform::json::Parser json;
    platform::qt::QtImages imageOperations;
    platform::qt::WebModule web;
    platform::linux::ModuleCalendar calendar;
    bool atLogin;
    bool startsAgain = false; ///< the end is that of this version only
    LoginWait loginWait;
    std::optional<Recording> recording;
    std::optional<palisor::DecisionLog> decisionLog; ///< where the log is verbose
    std::optional<palisor::AppDelegate> delegate;
    DoctorReport doctor;
    bus::ProductObject productObject;
    platform::linux::QuitSignals quitSignals;
};
