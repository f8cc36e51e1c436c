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

    /// `labelStep` is what the shown value grows by in a step.
    MenuSlider(const Slider& slider, double labelStep, Moved moved);

    /// Moves by that many steps.
    void step(int steps);
    void stepToEnd(bool maximum);
    /// A twentieth of the range or so.
    int pageSteps() const;

    void showActive(bool active);
    bool isActive() const { return active; }

    /// As its label counts.
    double shownValue() const { return modelValue() * perStep; }
    double shownMinimum() const { return minimumValue * perStep; }
    double shownMaximum() const { return (minimumValue + maximum() / unitsPerStep) * perStep; }
    double shownStep() const { return perStep; }
    /// To that shown value, or the nearest that there is.
    void goTo(double shown);

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
    double perStep;   ///< of the shown value
    int unitsPerStep; ///< so that the tick marks fall on whole units
    Moved moved;
    int grip = 0;  ///< from the handle's left edge to where it was taken
    int lastX = 0; ///< of the mouse that has the handle
    int wheelAngle = 0;
    bool active = false;
};

} // namespace platform::qt
