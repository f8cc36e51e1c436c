#pragma once

#include "platform/PopupLayer.h"
#include "platform/qt/menu/MenuPopup.h"

#include <QImage>
#include <QPointer>
#include <QTimer>
#include <vector>

namespace platform::qt {

/// Has a menu, its submenus and their tool tips shown on a layer of the window system's, and passes
/// on the pointer and the keys from there, as long as it lives. The toolkit goes on placing and
/// drawing them, and never shows a window of its own.
class LayeredPopups final : public QObject {
  public:
    /// Before the menu is shown. Takes the pointer and the keyboard. What is lent must outlive it.
    LayeredPopups(PopupLayer& layer, MenuPopup& menu);
    ~LayeredPopups() override;

    /// Where the menu is to open: at the pointer, beside the panel that this is on, or in the
    /// middle of a screen without a pointer.
    QPoint place() const;

  private:
    struct Shown {
        QPointer<QWidget> popup;
        int number;
        QImage picture; ///< that the layer has
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void keepOnScreen(QWidget& popup) const;
    void draw();
    void draw(Shown& shown);
    void moved(Point to);
    void clicked(int button, bool isDown);
    void scrolled(double notches);
    void pressed(const PopupLayer::Key& key);
    void released();
    QPoint pointerPlace() const;
    QWidget& innermost() const;
    void send(QEvent&& event);
    void sendMouse(QEvent::Type type, Qt::MouseButton button);
    void sendKey(QEvent::Type type, bool repeats);

    PopupLayer& layer;
    MenuPopup& menu;
    std::optional<QPointF> pointer;
    QRect room; ///< what panels leave of the monitor that it opened on; empty where it is unknown
    Qt::MouseButtons buttons;
    std::optional<PopupLayer::Key> held; ///< that was pressed last
    std::vector<Shown> shown;            ///< the lowest first
    const QWidget* entered = nullptr;    ///< the menu that the pointer came into last
    int lastNumber = 0;
    bool isDrawing = false;
    QTimer nextDrawing, repetition;
};

} // namespace platform::qt
