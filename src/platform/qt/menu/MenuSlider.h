#pragma once

#include "platform/InputEvents.h"
#include "platform/Menu.h"

#include <QSlider>
#include <functional>

namespace platform::qt {

/// A slider as data, shown. Its value goes in whole steps from its minimum. A press on the groove
/// brings the handle there.
class MenuSlider final : public QSlider {
  public:
    /// Leads to `leftMouseDragged` while the mouse has the handle, else to `leftMouseUp`: keys and
    /// the wheel set a value as finally as a release does.
    using Moved = std::function<void(double value, EventType how)>;

    MenuSlider(const Slider& slider, Moved moved);

    /// Moves by that many steps.
    void step(int steps);
    void stepToEnd(bool maximum);
    /// A twentieth of the range or so.
    int pageSteps() const;

    void showActive(bool active);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void initStyleOption(QStyleOptionSlider* option) const override;

  private:
    int valueAt(int x) const;
    void set(int position, EventType how);
    double modelValue() const;

    double minimumValue;
    int unitsPerStep; ///< so that the tick marks fall on whole units
    Moved moved;
    int grip = 0;  ///< from the handle's left edge to where it was taken
    int lastX = 0; ///< of the mouse that has the handle
    int wheelAngle = 0;
    bool active = false;
};

} // namespace platform::qt
