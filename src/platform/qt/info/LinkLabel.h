#pragma once

#include "platform/InfoWindow.h"

#include <QLabel>

namespace platform::qt {

/// A text of one look, in lines as wide as the label. A link can be clicked and reached by the
/// keyboard; another text can be selected with the mouse.
class LinkLabel final : public QLabel {
  public:
    LinkLabel(AttributedText text, QWidget* parent);

    /// The height of a text that is shown in such a label.
    static double heightOf(const QString& text, const QFont& font, double width);

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    void refresh();

    AttributedText content;
};

} // namespace platform::qt
