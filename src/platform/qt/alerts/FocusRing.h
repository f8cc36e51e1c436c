#pragma once

#include <QCheckBox>
#include <QPainter>
#include <QPushButton>

namespace platform::qt {

/// Shows that a widget has the keyboard, where styles show it faintly or not at all: they draw a
/// default button as if it had it always. For the end of its paint event.
inline void paintFocusRing(QWidget& widget, int inset) {
    if (!widget.hasFocus()) return;
    QPainter painter(&widget);
    painter.setPen(QPen(widget.palette().color(QPalette::Highlight), 1));
    painter.drawRect(widget.rect().adjusted(inset, inset, -inset - 1, -inset - 1));
}

/// A button of the toolkit's that has it, that far within its edges.
template <class Button, int inset>
class WithFocusRing final : public Button {
  public:
    using Button::Button;

  protected:
    void paintEvent(QPaintEvent* event) override {
        Button::paintEvent(event);
        paintFocusRing(*this, inset);
    }
};

using DialogButton = WithFocusRing<QPushButton, 3>;
using DialogCheckBox = WithFocusRing<QCheckBox, 0>;

} // namespace platform::qt
