#pragma once

#include "platform/InfoWindow.h"

#include <QScrollArea>
#include <functional>
#include <string>
#include <vector>

class QAbstractButton;

namespace platform::qt {

class Pictures;

/// The window itself, an ordinary one of the desktop. Its contents are as high as they were laid
/// out; where the screen is lower it scrolls.
class InfoPanel final : public QScrollArea {
  public:
    /// What the user does, told to whoever owns the window. Any of these may hide it.
    struct Heard {
        std::function<void(const InfoButton&)> pressed;
        std::function<void(CheckBox&)> clicked;
        std::function<void(const InfoText&, const std::string& link)> link;
    };

    /// The pictures must outlive the object; `icon` is that of the title bar.
    InfoPanel(const Pictures& pictures, const QIcon& icon, Heard heard);

    void setViews(const std::vector<InfoView>& views, QSize size);

    /// Shows it in front of what is there, as far as the window manager lets it, with its middle
    /// that far, in points, from the middle of the screen where the cursor is.
    void showAt(QPointF fromMiddle);

    /// The font that a size stands for, 12 being the desktop's own.
    static QFont fontOfSize(double size);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QWidget* make(const InfoButton& view);
    QWidget* make(const InfoCheckBox& view);
    QWidget* make(const InfoText& view);

    const Pictures& pictures;
    Heard heard;
    QSize contents;
    QAbstractButton* closing = nullptr;
};

} // namespace platform::qt
