#pragma once

#include "platform/InfoWindow.h"

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class QAbstractButton;
class QBoxLayout;
class QScrollArea;

namespace platform::qt {

class Pictures;
class PictureButton;

/// The window itself. Its views stand in rows as dialogues of the desktop have them: the topmost
/// picture, texts, links, check boxes, and at the bottom the other pictures and the buttons. The
/// window is as high as they need; where the screen is lower the topmost picture gets smaller, and
/// if that is not enough it scrolls.
class InfoPanel final : public QWidget {
  public:
    /// What the user does, told to whoever owns the window. Any of these may hide it.
    struct Heard {
        std::function<void(const InfoButton&)> pressed;
        std::function<void(CheckBox&)> clicked;
        std::function<void(const InfoText&, const std::string& link)> link;
        /// Whether the link leads anywhere; one that does not is shown as a text.
        std::function<bool(const std::string& link)> leadsSomewhere;
    };

    /// The pictures must outlive the object; `icon` is that of the title bar.
    InfoPanel(const Pictures& pictures, const QIcon& icon, Heard heard);

    /// The keyboard reaches them in the order of the rows, and the one that closes first.
    void setViews(const std::vector<InfoView>& views, int width);

    /// Shows it in front of what is there, as far as the window manager lets it, with its middle
    /// that far, in points, from the middle of the screen where the cursor is.
    void showAt(QPointF fromMiddle);

    /// The font that a size stands for, 12 being the desktop's own.
    static QFont fontOfSize(double size);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    /// What the rows are made of, each in its order on the screen.
    struct Rows {
        std::vector<PictureButton*> pictures;
        std::vector<QWidget*> texts, links, boxes;
        std::vector<QAbstractButton*> buttons;
    };

    void make(const InfoButton& view, Rows& rows);
    void make(const InfoCheckBox& view, Rows& rows);
    void make(const InfoText& view, Rows& rows);
    QBoxLayout* linkRow(const Rows& rows) const;
    QBoxLayout* buttonRow(const Rows& rows) const;
    void setTabOrderOf(const Rows& rows);
    int fitIntoHeight(int room);

    const Pictures& pictures;
    Heard heard;
    QScrollArea* area;
    QWidget* page = nullptr;
    PictureButton* topPicture = nullptr;
    QAbstractButton* closing = nullptr;
};

} // namespace platform::qt
