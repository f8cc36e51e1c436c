#pragma once

#include "platform/Alerts.h"
#include "platform/qt/loop/QtRunLoop.h"

#include <functional>
#include <string>

class QWidget;

namespace platform::qt {

class QtApplication;

class QtAlerts final : public Alerts {
  public:
    /// Makes the control that an alert names, as a child of the parent; null for an unknown one.
    using MakeAccessory = std::function<QWidget*(const std::string& name, QWidget* parent)>;

    /// `windowTitle` is that of every alert. `iconFile` is read at each one and need not exist.
    /// Without `accessories` no alert has a control.
    QtAlerts(QtRunLoop& loop, QtApplication& session, std::string windowTitle, std::string iconFile,
             MakeAccessory accessories = {})
        : runLoop(loop),
          application(session),
          title(std::move(windowTitle)),
          iconPath(std::move(iconFile)),
          makeAccessory(std::move(accessories)) {}

    int runModal(const Alert& alert) override;

  private:
    QtRunLoop& runLoop;
    QtApplication& application;
    std::string title;
    std::string iconPath;
    MakeAccessory makeAccessory;
};

} // namespace platform::qt
