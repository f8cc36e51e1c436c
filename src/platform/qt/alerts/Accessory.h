#pragma once

#include <QWidget>

namespace platform::qt {

/// A control that an alert shows below its texts.
class Accessory : public QWidget {
  public:
    using QWidget::QWidget;

    /// The user answers the alert, whichever way. False when that is too early: the control then
    /// says why and takes the keyboard, and the alert stays.
    virtual bool mayBeLeft() { return true; }
};

} // namespace platform::qt
