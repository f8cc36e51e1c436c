#include "platform/qt/menu/MenuSlider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <algorithm>
#include <climits>
#include <cmath>

namespace platform::qt {

namespace {

constexpr double pagesInRange = 20;

int wholeSteps(const Slider& slider) {
    return std::max(1, static_cast<int>(std::lround(slider.maximum - slider.minimum)));
}

} // namespace

MenuSlider::MenuSlider(const Slider& slider, double labelStep, Moved handler)
    : QSlider(Qt::Horizontal),
      minimumValue(slider.minimum),
      perStep(labelStep),
      unitsPerStep(std::max(1, slider.tickMarks - 1)),
      moved(std::move(handler)) {
    setFocusPolicy(Qt::NoFocus);
    setRange(0, wholeSteps(slider) * unitsPerStep);
    setSingleStep(unitsPerStep);
    setPageStep(pageSteps() * unitsPerStep);
    if (slider.tickMarks > 1) {
        setTickPosition(TicksAbove);
        setTickInterval(wholeSteps(slider));
    }
    setValue(static_cast<int>(std::lround((slider.value - slider.minimum) * unitsPerStep)));
}

int MenuSlider::pageSteps() const {
    return std::max(1, static_cast<int>(std::lround(maximum() / unitsPerStep / pagesInRange)));
}

double MenuSlider::modelValue() const {
    return minimumValue + static_cast<double>(value()) / unitsPerStep;
}

void MenuSlider::set(int position, EventType how) {
    const double steps = std::round(static_cast<double>(position) / unitsPerStep);
    const int before = value();
    setValue(static_cast<int>(steps) * unitsPerStep);
    if (value() != before || how == EventType::leftMouseUp) moved(modelValue(), how);
}

void MenuSlider::step(int steps) {
    set(value() + steps * unitsPerStep, EventType::leftMouseUp);
}

void MenuSlider::stepToEnd(bool toMaximum) {
    set(toMaximum ? maximum() : minimum(), EventType::leftMouseUp);
}

void MenuSlider::goTo(double shown) {
    const double steps = std::round(shown / perStep - minimumValue);
    set(static_cast<int>(std::clamp(steps * unitsPerStep, 0.0, double{INT_MAX})),
        EventType::leftMouseUp);
}

void MenuSlider::showActive(bool shown) {
    active = shown;
    update();
}

/// Where the value is when the left edge of the handle is at `x`.
int MenuSlider::valueAt(int x) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const QRect handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    return QStyle::sliderValueFromPosition(minimum(), maximum(), x - groove.x(),
                                           groove.width() - handle.width(), option.upsideDown);
}

void MenuSlider::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton) return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const int x = event->position().toPoint().x();
    const bool onHandle = x >= handle.left() && x <= handle.right();
    grip = onHandle ? x - handle.left() : handle.width() / 2;
    setSliderDown(true);
    lastX = x;
    if (!onHandle) set(valueAt(x - grip), EventType::leftMouseDragged);
}

void MenuSlider::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    if (!isSliderDown()) return;
    lastX = event->position().toPoint().x();
    set(valueAt(lastX - grip), EventType::leftMouseDragged);
}

void MenuSlider::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton || !isSliderDown()) return;
    setSliderDown(false);
    // The move that leaves the menu's window is not passed on.
    const int x = event->position().toPoint().x();
    set(x == lastX ? value() : valueAt(x - grip), EventType::leftMouseUp);
}

// A fine wheel sends parts of a notch.
void MenuSlider::wheelEvent(QWheelEvent* event) {
    event->accept();
    const QPoint angle = event->angleDelta();
    wheelAngle += angle.y() != 0 ? angle.y() : -angle.x();
    const int notches = wheelAngle / QWheelEvent::DefaultDeltasPerStep;
    wheelAngle -= notches * QWheelEvent::DefaultDeltasPerStep;
    if (notches != 0) step(notches * pageSteps());
}

void MenuSlider::initStyleOption(QStyleOptionSlider* option) const {
    QSlider::initStyleOption(option);
    if (active) option->state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
}

} // namespace platform::qt
