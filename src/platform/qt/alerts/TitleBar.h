#pragma once

#include <QWidget>

class QLabel;

namespace platform::qt {

/// The title of a window without a frame of the window manager's, some of which put their three
/// buttons onto every frame whatever the window asks for. It shows the window's icon and title, and
/// moves it.
class TitleBar final : public QWidget {
  public:
    /// The window is the one that it is put into; its title may change later.
    explicit TitleBar(QWidget& window);

    /// The flags of a window that has one, beside its type.
    static constexpr Qt::WindowFlags windowFlags = Qt::FramelessWindowHint;

    /// The line around such a window, for its paint event.
    static void paintBorder(QWidget& window);
    static constexpr int border = 1;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    QLabel* icon;
    QLabel* title;
};

} // namespace platform::qt
