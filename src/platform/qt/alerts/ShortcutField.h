#pragma once

#include <QToolButton>
#include <functional>

namespace platform::qt {

/// The look of a recorder's field: a line edit's frame, a text in its middle, a button that clears
/// it. It knows nothing of keys but that Space and Enter are a click, and is a button to those who
/// do not see it.
class ShortcutField final : public QAbstractButton {
  public:
    struct Look {
        QString text;
        bool faint = false;     ///< the text is no combination
        bool recording = false; ///< the frame is that of a focused field
        bool clearable = false;
    };

    ShortcutField(QString clearName, std::function<void()> clicked, std::function<void()> cleared,
                  QWidget* parent);

    void show(const Look& look);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override {}
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void drawClearIcon();

    Look look;
    QToolButton* clear;
    bool keyDown = false;
};

} // namespace platform::qt
