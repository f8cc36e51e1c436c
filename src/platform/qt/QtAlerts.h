#pragma once

#include "platform/Alerts.h"
#include "platform/qt/QtRunLoop.h"

#include <string>

namespace platform::qt {

class QtApplication;

class QtAlerts final : public Alerts {
  public:
    /// `iconFile` is read at each alert and need not exist.
    QtAlerts(QtRunLoop& loop, QtApplication& session, std::string iconFile)
        : runLoop(loop), application(session), iconPath(std::move(iconFile)) {}

    int runModal(const Alert& alert) override;

  private:
    QtRunLoop& runLoop;
    QtApplication& application;
    std::string iconPath;
};

} // namespace platform::qt
