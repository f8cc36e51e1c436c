#pragma once

#include "platform/qt/pictures/Pictures.h"

#include <QAbstractButton>

namespace platform::qt {

/// A picture that can be clicked, sharp at every scale, without a frame.
class PictureButton final : public QAbstractButton {
  public:
    /// The pictures must outlive the object.
    PictureButton(const Pictures& pictures, std::string name, QWidget* parent);

    QSize sizeHint() const override { return pictures.naturalSize(name); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const Pictures& pictures;
    std::string name;
};

} // namespace platform::qt
