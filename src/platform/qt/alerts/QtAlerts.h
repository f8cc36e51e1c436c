#pragma once

#include "platform/Alerts.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/pictures/Pictures.h"

#include <functional>
#include <string>

class QWidget;

namespace platform::qt {

class Accessory;
class QtApplication;

class QtAlerts final : public Alerts {
  public:
    /// Makes the control that an alert names, as a child of the parent; null for an unknown one.
    using MakeAccessory = std::function<Accessory*(const std::string& name, QWidget* parent)>;

    /// Every alert has that window title, and the picture named `icon`.
    QtAlerts(QtRunLoop& loop, QtApplication& session, std::string windowTitle,
             const Pictures& shown, std::string icon, MakeAccessory accessories)
        : runLoop(loop),
          application(session),
          title(std::move(windowTitle)),
          pictures(shown),
          iconName(std::move(icon)),
          makeAccessory(std::move(accessories)) {}

    int runModal(const Alert& alert) override;

    /// Shows the alert that is open again, also when it was minimised; false without one.
    static bool bringToFront();

  private:
    QtRunLoop& runLoop;
    QtApplication& application;
    std::string title;
    const Pictures& pictures;
    std::string iconName;
    MakeAccessory makeAccessory;
};

} // namespace platform::qt
